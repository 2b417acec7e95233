#include "ui/win32/painted_control.h"

#include "ui/win32/common_controls.h"
#include "ui/win32/memory_device.h"

namespace corvina::ui {
namespace {

constexpr UINT_PTR SubclassIdentifier = 11;

// What would press a button or open a list.
bool IsInput(UINT message) {
    return message == BM_CLICK || message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK || message == WM_KEYDOWN;
}

// After these the looks are others, and a control of some class draws itself at once, in its own way.
bool ChangesLooks(UINT message) {
    switch (message) {
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
        case WM_ENABLE:
        case WM_SETTEXT:
        case WM_SETFONT:
        case WM_UPDATEUISTATE:
        case WM_CAPTURECHANGED:
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
        case WM_KEYDOWN:
        case WM_KEYUP:
        case WM_CHAR:
        case WM_MOUSEWHEEL:
        case BM_SETSTATE:
        case BM_SETCHECK:
        case BM_SETSTYLE:
        case CB_SETCURSEL:
        case CB_SHOWDROPDOWN:
            return true;
        default:
            return false;
    }
}

}  // namespace

void PaintedControl::Install(std::unique_ptr<PaintedControl> picture) {
    if (SetWindowSubclass(picture->control_, &PaintedControl::Procedure, SubclassIdentifier,
                          reinterpret_cast<DWORD_PTR>(picture.get()))) {
        static_cast<void>(picture.release());
    }
}

bool PaintedControl::ShowsFocus() const {
    return GetFocus() == control_ && (SendMessageW(control_, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS) == 0;
}

bool PaintedControl::ShowsMnemonics() const {
    return (SendMessageW(control_, WM_QUERYUISTATE, 0, 0) & UISF_HIDEACCEL) == 0;
}

LRESULT CALLBACK PaintedControl::Procedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam,
                                           UINT_PTR identifier, DWORD_PTR reference) {
    auto* self = reinterpret_cast<PaintedControl*>(reference);
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(control, &PaintedControl::Procedure, identifier);
        delete self;
        return DefSubclassProc(control, message, wParam, lParam);
    }
    return self->HandleMessage(message, wParam, lParam);
}

LRESULT PaintedControl::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ERASEBKGND:
            return TRUE;
        case WM_PAINT: {
            PAINTSTRUCT painting{};
            Paint(BeginPaint(control_, &painting));
            EndPaint(control_, &painting);
            return 0;
        }
        case WM_PRINTCLIENT:
            Paint(reinterpret_cast<HDC>(wParam));
            return 0;
        case WM_MOUSEMOVE:
            SetHot(true);
            break;
        case WM_MOUSELEAVE:
            SetHot(false);
            break;
        case WM_ENABLE:
            // From now on the mouse is seen by the parent only.
            SetHot(isHot_ && wParam != FALSE);
            break;
        default:
            // Sent messages reach a disabled control, too, and it would take them.
            if (IsInput(message) && !IsWindowEnabled(control_)) {
                return 0;
            }
            break;
    }
    const LRESULT answer = DefSubclassProc(control_, message, wParam, lParam);
    if (ChangesLooks(message)) {
        // The picture is put right before the control's own is seen for long.
        RedrawWindow(control_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_NOERASE);
    }
    return answer;
}

void PaintedControl::SetHot(bool hot) {
    if (hot == isHot_) {
        return;
    }
    isHot_ = hot;
    if (hot) {
        TRACKMOUSEEVENT tracking{sizeof(tracking), TME_LEAVE, control_, 0};
        TrackMouseEvent(&tracking);
    }
    InvalidateRect(control_, nullptr, FALSE);
}

void PaintedControl::Paint(HDC target) const {
    RECT area{};
    GetClientRect(control_, &area);
    if (area.right > 0 && area.bottom > 0) {
        const MemoryDevice memory(target, {area.right, area.bottom});
        Draw(memory.Get(), area);
    }
}

}  // namespace corvina::ui
