#include "ui/win32/focus_keys.h"

#include "ui/win32/common_controls.h"

namespace corvina::ui {
namespace {

LRESULT CALLBACK FocusKeysProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identifier,
                                    DWORD_PTR) {
    const bool isKept = wParam == VK_TAB || wParam == VK_ESCAPE;
    switch (message) {
        case WM_GETDLGCODE: {
            // Only the two keys are asked for; all others keep the meaning that the control gives them.
            const auto* key = reinterpret_cast<const MSG*>(lParam);
            const bool isKeptKey = key != nullptr && (key->wParam == VK_TAB || key->wParam == VK_ESCAPE);
            const LRESULT answer = DefSubclassProc(control, message, wParam, lParam);
            return isKeptKey ? answer | DLGC_WANTMESSAGE : answer;
        }
        case WM_KEYDOWN:
        case WM_CHAR:
            if (isKept) {
                return 0;
            }
            break;
        case WM_SYSKEYDOWN:
            // Trees of some systems take every key for theirs, and the menu bar would not hear of these.
            if (wParam == VK_MENU || wParam == VK_F10) {
                return DefWindowProcW(control, message, wParam, lParam);
            }
            break;
        case WM_NCDESTROY:
            RemoveWindowSubclass(control, FocusKeysProcedure, identifier);
            break;
        default:
            break;
    }
    return DefSubclassProc(control, message, wParam, lParam);
}

}  // namespace

void KeepFocusKeys(HWND control) {
    SetWindowSubclass(control, FocusKeysProcedure, 1, 0);
}

}  // namespace corvina::ui
