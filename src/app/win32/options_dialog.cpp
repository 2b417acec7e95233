#include "app/win32/options_dialog.h"

namespace corvina {
namespace {

// Slots of the language tables.
constexpr int ViewSlot = 35;
constexpr int OptionsSlot = 40;
constexpr int GeneralSlot = 98;
constexpr int CancelSlot = 107;
constexpr int ApplySlot = 110;
constexpr int LanguageSlot = 209;
constexpr int AutomaticUpdatesSlot = 228;
constexpr int GridLinesSlot = 229;
constexpr int DisplayModeSlot = 248;
constexpr int ThemeInListViewSlot = 252;

enum Identifier : int {
    GeneralTab = 100,
    ViewTab,
    LanguageList = 110,
    AutomaticUpdatesBox,
    DisplayModeList = 120,
    ThemeInListViewBox,
    GridLinesBox
};

// Sizes at 96 dots per inch.
constexpr SIZE DialogSize = {460, 250};
constexpr int Margin = 12;
constexpr int RowHeight = 26;
constexpr int RowGap = 8;

ui::CheckState StateOf(bool checked) {
    return checked ? ui::CheckState::Checked : ui::CheckState::Unchecked;
}

}  // namespace

std::optional<OptionValues> OptionsDialog::Edit(HWND owner, HINSTANCE instance, Theme& scheme) {
    ui::DialogArguments arguments;
    arguments.Owner = owner;
    arguments.Instance = instance;
    arguments.Title = language_.Text(OptionsSlot);
    arguments.ClientSize = DialogSize;
    arguments.Scheme = &scheme;
    return RunModal(arguments) ? std::optional(chosen_) : std::nullopt;
}

void OptionsDialog::CreateControls() {
    AddButton(ButtonKind::Tab, language_.Text(GeneralSlot), GeneralTab, true);
    AddButton(ButtonKind::Tab, language_.Text(ViewSlot), ViewTab);
    CreateGeneralPage();
    CreateViewPage();
    AddButton(ButtonKind::DefaultPush, language_.Text(ApplySlot), IDOK);
    AddButton(ButtonKind::Push, language_.Text(CancelSlot), IDCANCEL);
    ui::SetCheckState(Control(GeneralTab), ui::CheckState::Checked);
    ShowPage(GeneralTab);
    SetFocus(Control(LanguageList));
}

void OptionsDialog::CreateGeneralPage() {
    languageLabel_ = AddLabel(language_.Text(LanguageSlot));
    AddDropDown(LanguageList, offer_.Languages, offer_.Now.LanguageEntry);
    AddCheckBox(language_.Text(AutomaticUpdatesSlot), AutomaticUpdatesBox, StateOf(offer_.Now.AutomaticUpdates));
}

void OptionsDialog::CreateViewPage() {
    displayModeLabel_ = AddLabel(language_.Text(DisplayModeSlot));
    AddDropDown(DisplayModeList, offer_.DisplayModes, static_cast<std::size_t>(offer_.Now.DisplayMode));
    AddCheckBox(language_.Text(ThemeInListViewSlot), ThemeInListViewBox, StateOf(offer_.Now.ThemeInListView));
    AddCheckBox(language_.Text(GridLinesSlot), GridLinesBox, StateOf(offer_.Now.GridLines));
}

void OptionsDialog::Layout(int width, int height) {
    const int margin = Pixels(Margin);
    const int row = Pixels(RowHeight);
    const int step = Pixels(RowHeight + RowGap);
    const int inner = width - 2 * margin;
    PlaceEndButtons(width, height, {IDOK, IDCANCEL});

    int left = margin;
    for (const int tab : {GeneralTab, ViewTab}) {
        const int tabWidth = ui::ButtonWidthOf(Control(tab));
        MoveWindow(Control(tab), left, margin, tabWidth, Pixels(30), TRUE);
        left += tabWidth - 1;
    }
    const int top = margin + Pixels(30) + margin;
    MoveWindow(languageLabel_, margin, top, inner, row, TRUE);
    ui::PlaceDropDown(Control(LanguageList), margin, top + row, inner, row);
    MoveWindow(Control(AutomaticUpdatesBox), margin, top + row + step, inner, row, TRUE);

    MoveWindow(displayModeLabel_, margin, top, inner, row, TRUE);
    ui::PlaceDropDown(Control(DisplayModeList), margin, top + row, inner, row);
    MoveWindow(Control(GridLinesBox), margin, top + row + step, inner, row, TRUE);
    MoveWindow(Control(ThemeInListViewBox), margin, top + row + 2 * step, inner, row, TRUE);
}

void OptionsDialog::ShowPage(int tab) {
    const bool general = tab == GeneralTab;
    const auto show = [](HWND control, bool shown) { ShowWindow(control, shown ? SW_SHOW : SW_HIDE); };
    show(languageLabel_, general);
    show(Control(LanguageList), general);
    show(Control(AutomaticUpdatesBox), general);
    show(displayModeLabel_, !general);
    show(Control(DisplayModeList), !general);
    show(Control(GridLinesBox), !general);
    ShowThemeInListView();
}

void OptionsDialog::ShowThemeInListView() {
    const bool shown = ui::IsChecked(Control(ViewTab)) && OffersThemeInListView(Values().DisplayMode);
    ShowWindow(Control(ThemeInListViewBox), shown ? SW_SHOW : SW_HIDE);
}

void OptionsDialog::CommandReceived(int identifier, UINT code) {
    switch (identifier) {
        case GeneralTab:
        case ViewTab:
            if (code == BN_CLICKED) {
                ShowPage(identifier);
            }
            break;
        case DisplayModeList:
            if (code == CBN_SELCHANGE) {
                ShowThemeInListView();
            }
            break;
        case IDOK:
            chosen_ = Values();
            End(true);
            break;
        default:
            break;
    }
}

OptionValues OptionsDialog::Values() const {
    const auto mode = ui::SelectedEntry(Control(DisplayModeList));
    return {.LanguageEntry = ui::SelectedEntry(Control(LanguageList)).value_or(offer_.Now.LanguageEntry),
            .DisplayMode = mode ? static_cast<int>(*mode) : offer_.Now.DisplayMode,
            .ThemeInListView = ui::IsChecked(Control(ThemeInListViewBox)),
            .GridLines = ui::IsChecked(Control(GridLinesBox)),
            .AutomaticUpdates = ui::IsChecked(Control(AutomaticUpdatesBox))};
}

}  // namespace corvina
