#include "ui/win32/layout_direction.h"

#include <utility>

#include "ui/win32/common_controls.h"

namespace corvina::ui {
namespace {

constexpr LONG_PTR Mirrored = WS_EX_LAYOUTRTL;

BOOL CALLBACK MirrorControl(HWND control, LPARAM mirrored) {
    ChangeExtendedStyle(control, Mirrored, mirrored != FALSE ? Mirrored : 0);
    return TRUE;
}

}  // namespace

bool ChangeExtendedStyle(HWND window, LONG_PTR which, LONG_PTR bits) {
    const LONG_PTR now = GetWindowLongPtrW(window, GWL_EXSTYLE);
    if ((now & which) == bits) {
        return false;
    }
    SetWindowLongPtrW(window, GWL_EXSTYLE, (now & ~which) | bits);
    return true;
}

void RedrawWithFrame(HWND window) {
    SetWindowPos(window, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

bool IsMirrored(HWND window) {
    return (GetWindowLongPtrW(window, GWL_EXSTYLE) & Mirrored) != 0;
}

DWORD LayoutLike(HWND owner) {
    return IsMirrored(owner) ? WS_EX_LAYOUTRTL : 0;
}

void SetMirrored(HWND window, bool mirrored) {
    if (ChangeExtendedStyle(window, Mirrored, mirrored ? Mirrored : 0)) {
        EnumChildWindows(window, MirrorControl, mirrored ? TRUE : FALSE);
        RedrawWithFrame(window);
    }
}

RECT InWindowDevice(HWND window, RECT screenArea) {
    RECT outer{};
    GetWindowRect(window, &outer);
    OffsetRect(&screenArea, -outer.left, -outer.top);
    if (IsMirrored(window)) {
        const LONG width = outer.right - outer.left;
        screenArea.left = width - screenArea.left;
        screenArea.right = width - screenArea.right;
        std::swap(screenArea.left, screenArea.right);
    }
    return screenArea;
}

DWORD ListBuffering(HWND list) {
    return IsMirrored(list) ? 0 : LVS_EX_DOUBLEBUFFER;
}

}  // namespace corvina::ui
