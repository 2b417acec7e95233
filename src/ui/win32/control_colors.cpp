#include "ui/win32/control_colors.h"

#include <initializer_list>
#include <string_view>

#include "theme/button_colors.h"
#include "ui/win32/button_painter.h"
#include "ui/win32/common_controls.h"

namespace corvina::ui {
namespace {

constexpr UINT_PTR EdgeIdentifier = 13;

bool IsOneOf(std::wstring_view name, std::initializer_list<std::wstring_view> names) {
    for (const std::wstring_view other : names) {
        if (CompareStringOrdinal(name.data(), static_cast<int>(name.size()), other.data(),
                                 static_cast<int>(other.size()), TRUE) == CSTR_EQUAL) {
            return true;
        }
    }
    return false;
}

void ColorList(HWND list, const Palette& colors) {
    SendMessageW(list, LVM_SETBKCOLOR, 0, static_cast<LPARAM>(colors.ControlBack));
    SendMessageW(list, LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(colors.ControlBack));
    SendMessageW(list, LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(colors.Text));
}

// The boxes of a list whose rows can be checked; the list owns their pictures.
void SetCheckImages(HWND list, const ControlLook& look) {
    const int size = look.Resolution.Pixels(17);
    const HIMAGELIST images = ImageList_Create(size, size, ILC_COLOR24, 2, 0);
    const HDC screen = GetDC(list);
    const HDC device = CreateCompatibleDC(screen);
    const COLORREF ground = look.Brushes->Colors().ControlBack;
    for (const bool checked : {false, true}) {
        const HBITMAP picture = CreateCompatibleBitmap(screen, size, size);
        const HGDIOBJ previous = SelectObject(device, picture);
        FillArea(device, {0, 0, size, size}, ground);
        DrawCheckBox(device, {1, 1, size - 1, size - 1}, checked, ground, look);
        SelectObject(device, previous);
        ImageList_Add(images, picture, nullptr);
        DeleteObject(picture);
    }
    DeleteDC(device);
    ReleaseDC(list, screen);
    const LRESULT replaced = SendMessageW(list, LVM_SETIMAGELIST, LVSIL_STATE, reinterpret_cast<LPARAM>(images));
    if (replaced != 0) {
        ImageList_Destroy(reinterpret_cast<HIMAGELIST>(replaced));
    }
}

void ColorTree(HWND tree, const Palette& colors) {
    SendMessageW(tree, TVM_SETBKCOLOR, 0, static_cast<LPARAM>(colors.ControlBack));
    SendMessageW(tree, TVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(colors.Text));
}

void DrawEdge(HWND control, const ControlLook& look) {
    RECT outer{};
    GetWindowRect(control, &outer);
    RECT client{};
    GetClientRect(control, &client);
    MapWindowPoints(control, nullptr, reinterpret_cast<POINT*>(&client), 2);
    // Above, since a scroll bar may stand on either side.
    const int width = static_cast<int>(client.top - outer.top);
    if (width <= 0) {
        return;
    }
    OffsetRect(&outer, -outer.left, -outer.top);
    const Palette& colors = look.Brushes->Colors();
    const HDC device = GetWindowDC(control);
    DrawFrame(device, outer, colors.ControlBack, width);
    DrawFrame(device, outer, Between(colors.Frame, colors.Text, 60), 1);
    ReleaseDC(control, device);
}

LRESULT CALLBACK EdgeProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identifier,
                               DWORD_PTR reference) {
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(control, &EdgeProcedure, identifier);
    }
    const LRESULT answer = DefSubclassProc(control, message, wParam, lParam);
    const auto& look = *reinterpret_cast<const ControlLook*>(reference);
    if (message == WM_NCPAINT && look.Brushes != nullptr && look.Brushes->IsDark()) {
        DrawEdge(control, look);
    }
    return answer;
}

}  // namespace

void ColorControl(HWND control, const ControlLook& look, Theme& scheme, const VisualStyles& styles) {
    wchar_t buffer[64] = {};
    const std::wstring_view name(buffer, static_cast<std::size_t>(GetClassNameW(control, buffer, 64)));
    const bool isDark = look.Brushes->IsDark();
    const bool canBeDark = scheme.System().IsSupported();
    scheme.System().AllowDarkForControl(control, isDark);
    const bool scrolls = IsOneOf(name, {L"Edit", L"RICHEDIT50W", UPDOWN_CLASSW});
    if (scrolls && canBeDark) {
        styles.Set(control, isDark ? L"DarkMode_Explorer" : L"Explorer");
    } else if (isDark && !canBeDark && IsOneOf(name, {WC_TREEVIEWW})) {
        // The style's arrows are dark and could not be seen; the old boxes have a ground of their own.
        styles.Remove(control);
    } else if (IsOneOf(name, {L"Button", WC_LISTVIEWW, WC_TREEVIEWW})) {
        styles.Set(control, L"Explorer");
    }
    if (canBeDark) {
        SendMessageW(control, WM_THEMECHANGED, 0, 0);
    }
    // Last, since a control takes colours of its own from a new style.
    if (IsOneOf(name, {WC_LISTVIEWW})) {
        ColorList(control, look.Brushes->Colors());
        if ((SendMessageW(control, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0) & LVS_EX_CHECKBOXES) != 0) {
            SetCheckImages(control, look);
        }
    } else if (IsOneOf(name, {WC_TREEVIEWW})) {
        ColorTree(control, look.Brushes->Colors());
    }
}

void ColorChildren(HWND window, const ControlLook& look, Theme& scheme, const VisualStyles& styles) {
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        ColorControl(child, look, scheme, styles);
    }
}

void PaintEdge(HWND control, const ControlLook& look) {
    SetWindowSubclass(control, &EdgeProcedure, EdgeIdentifier, reinterpret_cast<DWORD_PTR>(&look));
}

bool IsList(HWND control) {
    wchar_t name[32] = {};
    GetClassNameW(control, name, 32);
    return IsOneOf(name, {WC_LISTVIEWW});
}

LRESULT PaintListRow(NMLVCUSTOMDRAW& painting, const ControlLook& look) {
    if (painting.nmcd.dwDrawStage == CDDS_PREPAINT) {
        return look.Brushes->IsDark() ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT;
    }
    const HWND list = painting.nmcd.hdr.hwndFrom;
    const bool isSelected = painting.nmcd.dwDrawStage == CDDS_ITEMPREPAINT &&
                            SendMessageW(list, LVM_GETITEMSTATE, painting.nmcd.dwItemSpec, LVIS_SELECTED) != 0;
    if (!isSelected) {
        return CDRF_DODEFAULT;
    }
    painting.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED);
    painting.clrText = look.Brushes->Colors().Text;
    painting.clrTextBk = GetFocus() == list ? DarkSelection : DarkSelectionWithoutFocus;
    return CDRF_NEWFONT;
}

void ColorFrame(HWND window, Theme& scheme) {
    if (scheme.Mode() == DisplayMode::Black) {
        scheme.System().SetDarkTitleBar(window, scheme.Mode());
    } else {
        // The window may have been open in the dark scheme. What the system asks for is set last.
        scheme.System().ResetTitleBar(window);
    }
    scheme.System().AllowDarkForControl(window, scheme.IsDark());
    scheme.System().AllowDarkForWindow(window);
}

}  // namespace corvina::ui
