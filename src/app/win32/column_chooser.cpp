#include "app/win32/column_chooser.h"

#include <algorithm>
#include <array>
#include <string>

#include "app/command_ids.h"
#include "ui/win32/layout_direction.h"
#include "ui/win32/popup_menu.h"

namespace corvina {
namespace {

constexpr int CancelSlot = 107;
constexpr int ApplySlot = 110;
constexpr int ColumnsSlot = 111;
constexpr int SelectAllSlot = 197;
constexpr int InvertSlot = 198;

constexpr int ListIdentifier = 100;

// Sizes at 96 dots per inch.
constexpr int Margin = 12;
constexpr int Gap = 8;
constexpr int ButtonHeight = 28;

}  // namespace

std::optional<std::vector<bool>> ColumnChooser::Choose(HWND owner, HINSTANCE instance, Theme& scheme,
                                                       std::span<const ListColumn> columns,
                                                       const std::vector<bool>& visible) {
    columns_ = columns;
    visible_ = visible;
    visible_.resize(columns.size());
    ui::DialogArguments arguments;
    arguments.Owner = owner;
    arguments.Instance = instance;
    arguments.Title = language_.Text(ColumnsSlot);
    arguments.ClientSize = {340, 480};
    arguments.SmallestClient = {320, 240};
    arguments.Scheme = &scheme;
    if (!RunModal(arguments)) {
        return std::nullopt;
    }
    return visible_;
}

void ColumnChooser::CreateControls() {
    list_ = AddList(LVS_NOCOLUMNHEADER | LVS_SINGLESEL | LVS_SHOWSELALWAYS, ListIdentifier);
    const DWORD styles = LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT | ui::ListBuffering(list_);
    SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, styles, styles);
    FillList();

    AddButton(ButtonKind::Push, language_.Text(SelectAllSlot), CORVINA_ID_SELECT_ALL);
    AddButton(ButtonKind::Push, language_.Text(InvertSlot), CORVINA_ID_INVERT_SELECTION);
    AddButton(ButtonKind::DefaultPush, language_.Text(ApplySlot), IDOK);
    AddButton(ButtonKind::Push, language_.Text(CancelSlot), IDCANCEL);
    EnableApply();
    SetFocus(list_);
}

void ColumnChooser::FillList() {
    LVCOLUMNW description{};
    description.mask = LVCF_WIDTH;
    description.cx = 100;
    SendMessageW(list_, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&description));
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        std::wstring header = columns_[i].Header;
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = static_cast<int>(i);
        item.pszText = header.data();
        SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        Check(i, visible_[i]);
    }
    LVITEMW state{};
    state.stateMask = LVIS_FOCUSED | LVIS_SELECTED;
    state.state = LVIS_FOCUSED | LVIS_SELECTED;
    SendMessageW(list_, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&state));
    isFilled_ = true;
}

void ColumnChooser::Layout(int width, int height) {
    const int margin = Pixels(Margin);
    const int gap = Pixels(Gap);
    const int buttonHeight = Pixels(ButtonHeight);
    const int selectionTop = PlaceEndButtons(width, height, {IDOK, IDCANCEL}) - buttonHeight;
    MoveWindow(list_, margin, margin, std::max(width - 2 * margin, 0), std::max(selectionTop - gap - margin, 0), TRUE);
    RECT inside{};
    GetClientRect(list_, &inside);
    SendMessageW(list_, LVM_SETCOLUMNWIDTH, 0, inside.right);
    // The two buttons about the list stand right below it, those that end the dialog in the lower right corner: in some
    // languages all four would not fit beside each other.
    int left = margin;
    for (const int identifier : {CORVINA_ID_SELECT_ALL, CORVINA_ID_INVERT_SELECTION}) {
        const int buttonWidth = ui::ButtonWidthOf(Control(identifier));
        MoveWindow(Control(identifier), left, selectionTop, buttonWidth, buttonHeight, TRUE);
        left += buttonWidth + gap;
    }
}

void ColumnChooser::CommandReceived(int identifier, UINT) {
    switch (identifier) {
        case CORVINA_ID_SELECT_ALL:
            CheckAll();
            break;
        case CORVINA_ID_INVERT_SELECTION:
            InvertAll();
            break;
        case IDOK:
            for (std::size_t i = 0; i < visible_.size(); ++i) {
                visible_[i] = IsChecked(i);
            }
            End(true);
            break;
        default:
            break;
    }
}

std::optional<LRESULT> ColumnChooser::NotificationReceived(const NMHDR& notification, LPARAM) {
    if (notification.code == LVN_ITEMCHANGED && isFilled_) {
        EnableApply();
    }
    return std::nullopt;
}

void ColumnChooser::ContextMenuRequested(HWND control, POINT place) {
    if (control != list_) {
        return;
    }
    const ui::UniqueMenu popup = ui::LoadPopup(Instance(), CORVINA_ID_MENU_CHECK_LIST);
    const std::array<ui::PopupEntry, 3> entries = {
        ui::PopupEntry{CORVINA_ID_SELECT_ALL, std::wstring(language_.Text(SelectAllSlot)), true}, ui::PopupEntry{},
        ui::PopupEntry{CORVINA_ID_INVERT_SELECTION, std::wstring(language_.Text(InvertSlot)), true}};
    ui::SetPopupEntries(popup.get(), entries);
    const bool fromKeyboard = place.x == -1 && place.y == -1;
    ShowMenu(popup.get(), fromKeyboard ? ui::KeyboardMenuPlace(list_) : place);
}

bool ColumnChooser::IsChecked(std::size_t column) const {
    constexpr LRESULT CheckedImage = 2;
    return SendMessageW(list_, LVM_GETITEMSTATE, column, LVIS_STATEIMAGEMASK) >> 12 == CheckedImage;
}

void ColumnChooser::Check(std::size_t column, bool checked) {
    LVITEMW state{};
    state.stateMask = LVIS_STATEIMAGEMASK;
    state.state = static_cast<UINT>(INDEXTOSTATEIMAGEMASK(checked ? 2 : 1));
    SendMessageW(list_, LVM_SETITEMSTATE, column, reinterpret_cast<LPARAM>(&state));
}

void ColumnChooser::CheckAll() {
    for (std::size_t i = 0; i < visible_.size(); ++i) {
        Check(i, true);
    }
}

void ColumnChooser::InvertAll() {
    for (std::size_t i = 0; i < visible_.size(); ++i) {
        Check(i, !IsChecked(i));
    }
}

void ColumnChooser::EnableApply() {
    // A list without columns shows nothing and cannot even be clicked to get columns back.
    bool any = false;
    for (std::size_t i = 0; i < visible_.size() && !any; ++i) {
        any = IsChecked(i);
    }
    EnableWindow(GetDlgItem(Handle(), IDOK), any ? TRUE : FALSE);
}

}  // namespace corvina
