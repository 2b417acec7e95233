#include "app/option_changes.h"

#include "app/start_up.h"
#include "base/format_text.h"

namespace corvina {
namespace {

constexpr std::wstring_view Section = L"Options";

// Slots of the language tables.
constexpr int FirstLanguageSlot = 171;
constexpr int BlackSlot = 249;
constexpr int WhiteSlot = 250;
constexpr int FollowSystemSlot = 251;

// Has no slot in the language tables.
constexpr std::wstring_view RestartQuestion =
    L"A restart is required to initialize design data. Changed design data will only be adopted after the restart of "
    L"Corvina. \n\n Restart Corvina now?";

// Some names in the tables hold a tab, which a list would draw as a box or a gap.
std::wstring WithoutTabs(std::wstring_view text) {
    std::wstring plain;
    for (const wchar_t character : text) {
        const bool isBlank = character == L'\t' || character == L' ';
        if (!isBlank) {
            plain.push_back(character);
        } else if (!plain.empty() && plain.back() != L' ') {
            plain.push_back(L' ');
        }
    }
    return plain;
}

}  // namespace

OptionOffer OptionChanges::Offer() const {
    OptionOffer offer;
    for (int entry = 0; entry < i18n::LanguageCount; ++entry) {
        offer.Languages.push_back(WithoutTabs(state_.Language.Text(FirstLanguageSlot + entry)));
    }
    offer.DisplayModes = {std::wstring(state_.Language.Text(WhiteSlot)), std::wstring(state_.Language.Text(BlackSlot))};
    if (state_.Scheme.System().IsSupported()) {
        offer.DisplayModes.emplace_back(state_.Language.Text(FollowSystemSlot));
    }
    offer.Now = {.LanguageEntry = EntryOfLanguage(state_.Language.Index()),
                 .DisplayMode = static_cast<int>(state_.Scheme.Mode()),
                 .ThemeInListView = state_.Values.ColorListView,
                 .GridLines = state_.Values.GridLines,
                 .AutomaticUpdates = state_.Values.AutomaticUpdates};
    return offer;
}

OptionChanges::Outcome OptionChanges::Apply(const OptionValues& chosen) {
    Outcome outcome;
    outcome.Restart = WriteDisplayMode(chosen.DisplayMode);
    SettingsStore& settings = *state_.Settings;
    SettingsValues& values = state_.Values;
    values.CurrTheme = chosen.DisplayMode;
    values.ColorListView = OffersThemeInListView(chosen.DisplayMode) && chosen.ThemeInListView;
    values.GridLines = chosen.GridLines;
    values.AutomaticUpdates = chosen.AutomaticUpdates;
    settings.WriteSetting(Section, L"ColorListView", values.ColorListView ? L"1" : L"0");
    settings.WriteSetting(Section, L"GridLines", values.GridLines ? L"1" : L"0");
    settings.WriteSetting(Section, L"autoupdates", values.AutomaticUpdates ? L"1" : L"0");
    const int language = LanguageOfEntry(chosen.LanguageEntry);
    settings.WriteSetting(Section, L"Language", FormatText(L"%i", {language}));

    MainWindowView& window = state_.Shown.Window;
    state_.Scheme.Apply(chosen.DisplayMode);
    window.ApplyTheme();
    window.SetGridLines(values.GridLines);
    if (language != state_.Language.Index() && !outcome.Restart) {
        SpeakLanguage(language);
        outcome.OtherLanguage = true;
    }
    window.Repaint();
    return outcome;
}

// True when the user wants the restart that another mode needs.
bool OptionChanges::WriteDisplayMode(int mode) {
    state_.Settings->WriteSetting(Section, L"CurrTheme", FormatText(L"%i", {mode}));
    return mode != static_cast<int>(state_.Scheme.Mode()) && state_.System.Boxes.AskYesNo(RestartQuestion, L"Corvina");
}

void OptionChanges::SpeakLanguage(int language) {
    state_.Language.SetIndex(language);
    state_.Values.LanguageIndex = language;
    MainWindowView& window = state_.Shown.Window;
    window.SetTexts();
    ShowTitleAndVersion(state_);
    state_.Columns.TakeWidths(window);
    state_.Columns.SetHeaders(state_.Language);
    window.SetListColumns(state_.Columns.Shown());
    if (state_.Logs) {
        state_.Logs->Builder.RenameFixedNodes();
    }
}

}  // namespace corvina
