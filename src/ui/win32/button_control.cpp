#include "ui/win32/button_control.h"

#include <memory>

#include "ui/win32/button_painter.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/memory_device.h"

namespace corvina::ui {
namespace {

constexpr UINT_PTR SubclassIdentifier = 11;
constexpr wchar_t PropertyName[] = L"CorvinaPaintedButton";

// Belongs to its control and goes with it.
class PaintedButton {
  public:
    PaintedButton(HWND control, ButtonKind kind, const ControlLook& look)
        : control_(control), kind_(kind), look_(look) {}

    static PaintedButton* Of(HWND control) { return static_cast<PaintedButton*>(GetPropW(control, PropertyName)); }

    static LRESULT CALLBACK Procedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identifier,
                                      DWORD_PTR reference) {
        auto* self = reinterpret_cast<PaintedButton*>(reference);
        if (message == WM_NCDESTROY) {
            RemovePropW(control, PropertyName);
            RemoveWindowSubclass(control, &PaintedButton::Procedure, identifier);
            delete self;
            return DefSubclassProc(control, message, wParam, lParam);
        }
        return self->HandleMessage(message, wParam, lParam);
    }

    int Width() const { return ButtonWidth(control_, Picture(), look_); }

  private:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
        switch (message) {
            case WM_ERASEBKGND:
                return TRUE;
            case WM_PAINT:
                Paint();
                return 0;
            case WM_PRINTCLIENT:
                Draw(reinterpret_cast<HDC>(wParam));
                return 0;
            case WM_MOUSEMOVE:
                SetHot(true);
                break;
            case WM_MOUSELEAVE:
                SetHot(false);
                break;
            case BM_CLICK:
            case WM_LBUTTONDOWN:
            case WM_LBUTTONDBLCLK:
            case WM_KEYDOWN:
                // Sent messages reach a disabled control, and it would take them.
                if (!IsWindowEnabled(control_)) {
                    return 0;
                }
                break;
            default:
                break;
        }
        const LRESULT answer = DefSubclassProc(control_, message, wParam, lParam);
        if (ChangesLooks(message)) {
            // Some versions draw at once, in their own way; the picture is put right before it is seen for long.
            RedrawWindow(control_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_NOERASE);
        }
        return answer;
    }

    static bool ChangesLooks(UINT message) {
        switch (message) {
            case BM_SETSTATE:
            case BM_SETCHECK:
            case BM_SETSTYLE:
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
                return true;
            default:
                return false;
        }
    }

    void SetHot(bool hot) {
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

    ButtonPicture Picture() const {
        ButtonPicture picture;
        picture.Kind = kind_;
        const LONG_PTR style = GetWindowLongPtrW(control_, GWL_STYLE);
        if (kind_ == ButtonKind::Push && (style & BS_TYPEMASK) == BS_DEFPUSHBUTTON) {
            // The dialog manager makes the button with the focus the default one.
            picture.Kind = ButtonKind::DefaultPush;
        } else if (kind_ == ButtonKind::DefaultPush && (style & BS_TYPEMASK) != BS_DEFPUSHBUTTON) {
            picture.Kind = ButtonKind::Push;
        }
        const LRESULT state = SendMessageW(control_, BM_GETSTATE, 0, 0);
        picture.State.Hot = isHot_;
        picture.State.Pressed = (state & BST_PUSHED) != 0;
        picture.State.Checked = (state & 3) == BST_CHECKED;
        picture.State.Disabled = !IsWindowEnabled(control_);
        const LRESULT cues = SendMessageW(control_, WM_QUERYUISTATE, 0, 0);
        picture.ShowsFocus = GetFocus() == control_ && (cues & UISF_HIDEFOCUS) == 0;
        picture.ShowsMnemonics = (cues & UISF_HIDEACCEL) == 0;
        picture.Text.resize(static_cast<std::size_t>(GetWindowTextLengthW(control_)) + 1);
        picture.Text.resize(static_cast<std::size_t>(
            GetWindowTextW(control_, picture.Text.data(), static_cast<int>(picture.Text.size()))));
        picture.Font = reinterpret_cast<HFONT>(SendMessageW(control_, WM_GETFONT, 0, 0));
        return picture;
    }

    void Paint() const {
        PAINTSTRUCT painting{};
        Draw(BeginPaint(control_, &painting));
        EndPaint(control_, &painting);
    }

    void Draw(HDC device) const {
        RECT area{};
        GetClientRect(control_, &area);
        if (area.right > 0 && area.bottom > 0) {
            const MemoryDevice memory(device, {area.right, area.bottom});
            DrawButton(memory.Get(), area, Picture(), look_);
        }
    }

    HWND control_;
    ButtonKind kind_;
    const ControlLook& look_;
    bool isHot_ = false;
};

DWORD StyleOf(const ButtonArguments& arguments) {
    const DWORD group = arguments.StartsGroup ? WS_GROUP | WS_TABSTOP : 0;
    switch (arguments.Kind) {
        case ButtonKind::Push:
            return WS_GROUP | WS_TABSTOP | BS_PUSHBUTTON;
        case ButtonKind::DefaultPush:
            return WS_GROUP | WS_TABSTOP | BS_DEFPUSHBUTTON;
        case ButtonKind::CheckBox:
            return WS_GROUP | WS_TABSTOP | BS_AUTOCHECKBOX;
        case ButtonKind::RadioButton:
            return group | BS_AUTORADIOBUTTON;
        case ButtonKind::Tab:
            return group | BS_AUTORADIOBUTTON | BS_PUSHLIKE;
    }
    return 0;
}

}  // namespace

HWND CreateButton(const ButtonArguments& arguments) {
    const HWND control = CreateWindowExW(
        0, L"BUTTON", arguments.Text.c_str(), WS_CHILD | WS_VISIBLE | StyleOf(arguments), 0, 0, 0, 0, arguments.Parent,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(arguments.Identifier)), arguments.Instance, nullptr);
    if (control == nullptr) {
        return nullptr;
    }
    auto button = std::make_unique<PaintedButton>(control, arguments.Kind, *arguments.Look);
    if (SetWindowSubclass(control, &PaintedButton::Procedure, SubclassIdentifier,
                          reinterpret_cast<DWORD_PTR>(button.get()))) {
        SetPropW(control, PropertyName, button.get());
        static_cast<void>(button.release());
    }
    return control;
}

void SetCheckState(HWND button, CheckState state) {
    const bool checked = state == CheckState::Checked || state == CheckState::CheckedDisabled;
    const bool enabled = state == CheckState::Checked || state == CheckState::Unchecked;
    EnableWindow(button, enabled ? TRUE : FALSE);
    SendMessageW(button, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

CheckState GetCheckState(HWND button) {
    if (IsWindowEnabled(button)) {
        return IsChecked(button) ? CheckState::Checked : CheckState::Unchecked;
    }
    return IsChecked(button) ? CheckState::CheckedDisabled : CheckState::UncheckedDisabled;
}

bool IsChecked(HWND button) {
    return SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

int ButtonWidthOf(HWND button) {
    const PaintedButton* painted = PaintedButton::Of(button);
    return painted == nullptr ? 0 : painted->Width();
}

}  // namespace corvina::ui
