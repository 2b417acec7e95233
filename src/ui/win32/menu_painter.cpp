#include "ui/win32/menu_painter.h"

#include <algorithm>
#include <string>

#include "theme/button_colors.h"
#include "ui/win32/button_painter.h"
#include "ui/win32/fonts.h"
#include "ui/win32/layout_direction.h"

namespace corvina::ui {
namespace {

// Sizes at 96 dots per inch.
constexpr int EntryHeight = 24;
constexpr int SeparatorHeight = 9;
constexpr int EntryMargin = 26;  // on both sides of an entry's text
constexpr int BarMargin = 2;     // likewise in the bar, to which the system adds some

std::wstring TextAt(HMENU menu, UINT position) {
    wchar_t text[260] = {};
    MENUITEMINFOW entry{};
    entry.cbSize = sizeof(entry);
    entry.fMask = MIIM_STRING;
    entry.dwTypeData = text;
    entry.cch = 260;
    return GetMenuItemInfoW(menu, position, TRUE, &entry) ? std::wstring(text) : std::wstring();
}

// The text of the entry with that identifier; an entry that opens a menu has that menu's.
std::wstring TextOf(HMENU menu, UINT identifier) {
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        MENUITEMINFOW entry{};
        entry.cbSize = sizeof(entry);
        entry.fMask = MIIM_ID;
        if (GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &entry) && entry.wID == identifier) {
            return TextAt(menu, static_cast<UINT>(position));
        }
    }
    return {};
}

}  // namespace

void MenuPainter::Prepare(HMENU menu, bool isBar) const {
    const PaletteBrushes& brushes = *look_.Brushes;
    MENUINFO whole{};
    whole.cbSize = sizeof(whole);
    whole.fMask = MIM_BACKGROUND;
    whole.hbrBack = !brushes.IsDark() ? nullptr : isBar ? brushes.Panel() : brushes.ControlBack();
    SetMenuInfo(menu, &whole);
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        MENUITEMINFOW entry{};
        entry.cbSize = sizeof(entry);
        entry.fMask = MIIM_FTYPE;
        GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &entry);
        entry.fType &= ~static_cast<UINT>(MFT_OWNERDRAW);
        entry.fType |= brushes.IsDark() ? MFT_OWNERDRAW : 0;
        // Measuring is told an entry's identifier but not its menu.
        entry.fMask = MIIM_FTYPE | MIIM_DATA;
        entry.dwItemData = reinterpret_cast<ULONG_PTR>(menu);
        SetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &entry);
    }
}

void MenuPainter::FillBar(HWND window) const {
    const HMENU menu = GetMenu(window);
    MENUBARINFO bar{};
    bar.cbSize = sizeof(bar);
    if (menu == nullptr || look_.Brushes == nullptr || !look_.Brushes->IsDark() ||
        !GetMenuBarInfo(window, OBJID_MENU, 0, &bar)) {
        return;
    }
    LONG entries = 0;
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        RECT entry{};
        GetMenuItemRect(window, menu, static_cast<UINT>(position), &entry);
        entries += entry.right - entry.left;
    }
    // Below the bar the frame has a line on some systems; on others the client area and what stands in it begin there,
    // or even in the last line that is said to be the bar's.
    POINT client{};
    ClientToScreen(window, &client);
    bar.rcBar.bottom = std::min(bar.rcBar.bottom + 1, client.y);
    const RECT area = InWindowDevice(window, bar.rcBar);
    // Added up, since in mirrored bars not all systems tell the entries' true places.
    const RECT rest{area.left + entries, area.top, area.right, area.bottom};
    const RECT line{area.left, area.bottom - 1, area.right, area.bottom};
    const HDC device = GetWindowDC(window);
    FillArea(device, rest, look_.Brushes->Colors().Panel);
    FillArea(device, line, look_.Brushes->Colors().Panel);
    ReleaseDC(window, device);
}

bool MenuPainter::Measure(HWND window, MEASUREITEMSTRUCT& size) const {
    const auto menu = reinterpret_cast<HMENU>(size.itemData);
    if (size.CtlType != ODT_MENU || !IsMenu(menu)) {
        return false;
    }
    const Scale scale = look_.Resolution;
    const UniqueFont font = CreateInterfaceFont(scale, look_.Face);
    const std::wstring text = TextOf(menu, size.itemID);
    const int margin = scale.Pixels(menu == GetMenu(window) ? BarMargin : EntryMargin);
    size.itemWidth = static_cast<UINT>(TextExtent(window, font.get(), text).cx + 2 * margin);
    size.itemHeight = static_cast<UINT>(scale.Pixels(size.itemID == 0 ? SeparatorHeight : EntryHeight));
    return true;
}

bool MenuPainter::Draw(HWND window, const DRAWITEMSTRUCT& drawing) const {
    if (drawing.CtlType != ODT_MENU) {
        return false;
    }
    const auto menu = reinterpret_cast<HMENU>(drawing.hwndItem);
    const bool isBar = menu == GetMenu(window);
    const Palette& colors = look_.Brushes->Colors();
    const Scale scale = look_.Resolution;
    RECT area = drawing.rcItem;
    const bool isActive = (drawing.itemState & (ODS_SELECTED | ODS_HOTLIGHT)) != 0;
    const bool isDisabled = (drawing.itemState & (ODS_GRAYED | ODS_DISABLED)) != 0;
    const COLORREF ground = isBar ? colors.Panel : colors.ControlBack;
    FillArea(drawing.hDC, area, isActive && !isDisabled ? DarkSelection : ground);
    if (drawing.itemID == 0) {
        const LONG middle = (area.top + area.bottom) / 2;
        FillArea(drawing.hDC, {area.left, middle, area.right, middle + 1}, colors.Frame);
        return true;
    }
    const UniqueFont font = CreateInterfaceFont(scale, look_.Face);
    const HGDIOBJ previous = SelectObject(drawing.hDC, font.get());
    SetBkMode(drawing.hDC, TRANSPARENT);
    SetTextColor(drawing.hDC, isDisabled ? Between(ground, colors.Text, 120) : colors.Text);
    area.left += isBar ? 0 : scale.Pixels(EntryMargin);
    const UINT mnemonics = (drawing.itemState & ODS_NOACCEL) != 0 ? DT_HIDEPREFIX : 0U;
    DrawTextW(drawing.hDC, TextOf(menu, drawing.itemID).c_str(), -1, &area,
              DT_SINGLELINE | DT_VCENTER | DT_EXPANDTABS | (isBar ? DT_CENTER : DT_LEFT) | mnemonics);
    SelectObject(drawing.hDC, previous);
    return true;
}

LRESULT MenuPainter::CharacterTyped(HMENU menu, wchar_t character) const {
    if (!look_.Brushes->IsDark()) {
        return 0;
    }
    int first = -1;
    int matches = 0;
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        const std::wstring text = TextAt(menu, static_cast<UINT>(position));
        const std::size_t mnemonic = text.find(L'&');
        const std::size_t place = mnemonic == std::wstring::npos ? 0 : mnemonic + 1;
        if (place < text.size() && CompareStringOrdinal(&text[place], 1, &character, 1, TRUE) == CSTR_EQUAL) {
            first = matches++ == 0 ? position : first;
        }
    }
    if (matches == 0) {
        return 0;
    }
    return MAKELRESULT(first, matches == 1 ? MNC_EXECUTE : MNC_SELECT);
}

}  // namespace corvina::ui
