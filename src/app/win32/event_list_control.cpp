#include "app/win32/event_list_control.h"

#include <algorithm>
#include <array>

#include "resource_ids.h"
#include "ui/win32/focus_keys.h"
#include "ui/win32/image_lists.h"
#include "ui/win32/layout_direction.h"
#include "ui/win32/popup_menu.h"

namespace corvina {
namespace {

constexpr std::array LevelIcons = {CORVINA_ICON_INFORMATION,   CORVINA_ICON_WARNING,      CORVINA_ICON_ERROR,
                                   CORVINA_ICON_AUDIT_SUCCESS, CORVINA_ICON_AUDIT_FAILED, CORVINA_ICON_CRITICAL,
                                   CORVINA_ICON_VERBOSE};
constexpr std::size_t MostRows = 100'000'000;

}  // namespace

bool EventListControl::Create(HWND parent, HINSTANCE instance, UINT selectionMessage) {
    selectionMessage_ = selectionMessage;
    handle_ = CreateWindowExW(
        WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"",
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS, 0, 0,
        0, 0, parent, nullptr, instance, nullptr);
    if (handle_ == nullptr) {
        return false;
    }
    SetExtendedStyles();
    ui::KeepFocusKeys(handle_);
    headerPainter_.Install(handle_);
    return true;
}

LRESULT EventListControl::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendMessageW(handle_, message, wParam, lParam);
}

HWND EventListControl::Header() const {
    return reinterpret_cast<HWND>(Send(LVM_GETHEADER, 0, 0));
}

void EventListControl::SetColumns(std::span<const ListColumn> columns) {
    while (Send(LVM_DELETECOLUMN, 0, 0) != FALSE) {
    }
    int position = 0;
    for (const ListColumn& column : columns) {
        std::wstring header = column.Header;
        LVCOLUMNW description{};
        description.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM | LVCF_FMT;
        description.fmt = LVCFMT_LEFT;
        description.pszText = header.data();
        description.cx = column.Width;
        description.iSubItem = position;
        Send(LVM_INSERTCOLUMNW, static_cast<WPARAM>(position), reinterpret_cast<LPARAM>(&description));
        ++position;
    }
}

std::optional<int> EventListControl::ColumnWidth(std::size_t position) const {
    LVCOLUMNW description{};
    description.mask = LVCF_WIDTH;
    if (Send(LVM_GETCOLUMNW, position, reinterpret_cast<LPARAM>(&description)) == FALSE) {
        return std::nullopt;
    }
    return description.cx;
}

void EventListControl::ScaleColumns(ui::Scale from, ui::Scale to) {
    for (std::size_t position = 0; const auto width = ColumnWidth(position); ++position) {
        Send(LVM_SETCOLUMNWIDTH, position, to.Converted(*width, from));
    }
}

void EventListControl::SetExtendedStyles() {
    constexpr DWORD Always = LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP | LVS_EX_INFOTIP;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, Always | LVS_EX_DOUBLEBUFFER, Always | ui::ListBuffering(handle_));
    SetGridLines(gridLines_);
}

void EventListControl::SetGridLines(bool on) {
    gridLines_ = on;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_GRIDLINES, on ? LVS_EX_GRIDLINES : 0);
}

void EventListControl::Clear() {
    programChanges_ = true;
    Send(LVM_DELETEALLITEMS, 0, 0);
    programChanges_ = false;
    selectionWaits_ = false;
}

void EventListControl::SetRowCount(std::size_t count) {
    Send(LVM_SETITEMCOUNT, std::min(count, MostRows), LVSICF_NOSCROLL);
    InvalidateRect(handle_, nullptr, FALSE);
}

std::size_t EventListControl::RowCount() const {
    return static_cast<std::size_t>(Send(LVM_GETITEMCOUNT, 0, 0));
}

void EventListControl::SelectOnly(std::size_t row) {
    if (row >= RowCount()) {
        return;
    }
    programChanges_ = true;
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    Send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&state));
    state.state = LVIS_SELECTED | LVIS_FOCUSED;
    Send(LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&state));
    Send(LVM_SETSELECTIONMARK, 0, static_cast<LPARAM>(row));
    Send(LVM_ENSUREVISIBLE, row, FALSE);
    programChanges_ = false;
    // Several changes of the control are one for the owner.
    selectionWaits_ = false;
    owner_.SelectionChanged();
}

void EventListControl::SelectAll() {
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED;
    state.state = LVIS_SELECTED;
    Send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&state));
    SelectionMayHaveChanged();
}

bool EventListControl::IsSelected(std::size_t row) const {
    return (Send(LVM_GETITEMSTATE, row, LVIS_SELECTED) & LVIS_SELECTED) != 0;
}

std::optional<std::size_t> EventListControl::NextSelected(int after) const {
    const LRESULT found = Send(LVM_GETNEXTITEM, static_cast<WPARAM>(after), LVNI_SELECTED);
    return found < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(found));
}

std::optional<std::size_t> EventListControl::FirstSelected() const {
    return NextSelected(-1);
}

std::vector<std::size_t> EventListControl::SelectedRows() const {
    std::vector<std::size_t> rows;
    rows.reserve(static_cast<std::size_t>(Send(LVM_GETSELECTEDCOUNT, 0, 0)));
    for (auto row = NextSelected(-1); row; row = NextSelected(static_cast<int>(*row))) {
        rows.push_back(*row);
    }
    return rows;
}

void EventListControl::SelectionMayHaveChanged() {
    if (!programChanges_ && !selectionWaits_) {
        selectionWaits_ = true;
        PostMessageW(GetParent(handle_), selectionMessage_, 0, 0);
    }
}

void EventListControl::DeliverSelection() {
    if (selectionWaits_) {
        selectionWaits_ = false;
        owner_.SelectionChanged();
    }
}

LRESULT EventListControl::NotificationReceived(const NMHDR& notification, LPARAM lParam) {
    switch (notification.code) {
        case LVN_GETDISPINFOW:
            FillItem(reinterpret_cast<NMLVDISPINFOW*>(lParam)->item);
            return 0;
        case LVN_ODFINDITEMW:
            return FindByPrefix(*reinterpret_cast<const NMLVFINDITEMW*>(lParam));
        case LVN_ITEMCHANGED: {
            const auto& change = *reinterpret_cast<const NMLISTVIEW*>(lParam);
            if (((change.uOldState ^ change.uNewState) & LVIS_SELECTED) != 0) {
                SelectionMayHaveChanged();
            }
            return 0;
        }
        case LVN_ODSTATECHANGED:
            SelectionMayHaveChanged();
            return 0;
        case LVN_COLUMNCLICK:
            owner_.HeaderClicked(static_cast<std::size_t>(reinterpret_cast<const NMLISTVIEW*>(lParam)->iSubItem));
            return 0;
        case LVN_GETINFOTIPW:
            FillInfoTip(*reinterpret_cast<NMLVGETINFOTIPW*>(lParam));
            return 0;
        case LVN_KEYDOWN:
            KeyPressed(*reinterpret_cast<const NMLVKEYDOWN*>(lParam));
            return 0;
        case NM_DBLCLK:
            if (reinterpret_cast<const NMITEMACTIVATE*>(lParam)->iItem >= 0) {
                DeliverSelection();
                owner_.RowActivated();
            }
            return 0;
        case NM_CUSTOMDRAW:
            return PaintRow(*reinterpret_cast<NMLVCUSTOMDRAW*>(lParam));
        default:
            return 0;
    }
}

void EventListControl::KeyPressed(const NMLVKEYDOWN& key) {
    const bool control = GetKeyState(VK_CONTROL) < 0;
    const bool alternate = GetKeyState(VK_MENU) < 0;
    if (key.wVKey == 'A' && control && !alternate) {
        SelectAll();
    }
}

POINT EventListControl::SelectionPlace() const {
    RECT area{};
    area.left = LVIR_LABEL;
    const auto row = FirstSelected();
    RECT visible{};
    GetClientRect(handle_, &visible);
    if (!row || Send(LVM_GETITEMRECT, *row, reinterpret_cast<LPARAM>(&area)) == FALSE || area.top < 0 ||
        area.bottom > visible.bottom) {
        return ui::KeyboardMenuPlace(handle_);
    }
    POINT place{area.left, area.bottom};
    ClientToScreen(handle_, &place);
    return place;
}

void EventListControl::SetIcons(HINSTANCE instance, ui::Scale scale) {
    ui::UniqueImageList icons = ui::LoadSmallIcons(instance, LevelIcons, scale);
    Send(LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(icons.get()));
    icons_ = std::move(icons);
}

void EventListControl::SetColors(const ui::PaletteBrushes& brushes) {
    textColor_ = brushes.Colors().Text;
    isDark_ = brushes.IsDark();
    Send(LVM_SETBKCOLOR, 0, static_cast<LPARAM>(brushes.Colors().ControlBack));
    Send(LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(brushes.Colors().ControlBack));
    Send(LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(brushes.Colors().Text));
    headerPainter_.SetColors(brushes);
}

}  // namespace corvina
