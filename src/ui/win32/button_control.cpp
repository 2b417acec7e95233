#include "ui/win32/button_control.h"

#include <memory>

#include "ui/win32/button_painter.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/painted_control.h"
#include "ui/win32/window_text.h"

namespace corvina::ui {
namespace {

class PaintedButton final : public PaintedControl {
  public:
    PaintedButton(HWND control, ButtonKind kind, const ControlLook& look)
        : PaintedControl(control, look), kind_(kind) {}

  private:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == BCM_GETIDEALSIZE) {
            reinterpret_cast<SIZE*>(lParam)->cx = ButtonWidth(Handle(), Picture(), Look());
            return TRUE;
        }
        return PaintedControl::HandleMessage(message, wParam, lParam);
    }

    void Draw(HDC device, const RECT& area) const override { DrawButton(device, area, Picture(), Look()); }

    ButtonPicture Picture() const {
        const LRESULT state = SendMessageW(Handle(), BM_GETSTATE, 0, 0);
        return {.Kind = ShownKind(),
                .State = {.Hot = IsHot(),
                          .Pressed = (state & BST_PUSHED) != 0,
                          .Disabled = !IsWindowEnabled(Handle()),
                          .Checked = (state & 3) == BST_CHECKED},
                .ShowsFocus = ShowsFocus(),
                .ShowsMnemonics = ShowsMnemonics(),
                .Text = TextOf(Handle()),
                .Font = Font()};
    }

    // The dialog manager makes the button with the focus the default one.
    ButtonKind ShownKind() const {
        if (kind_ != ButtonKind::Push && kind_ != ButtonKind::DefaultPush) {
            return kind_;
        }
        const bool isDefault = (GetWindowLongPtrW(Handle(), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
        return isDefault ? ButtonKind::DefaultPush : ButtonKind::Push;
    }

    ButtonKind kind_;
};

DWORD StyleOf(const ButtonArguments& arguments) {
    const DWORD group = arguments.StartsGroup ? WS_GROUP | WS_TABSTOP : 0;
    switch (arguments.Kind) {
        case ButtonKind::Push:
        case ButtonKind::UpArrow:
        case ButtonKind::DownArrow:
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
    PaintedControl::Install(std::make_unique<PaintedButton>(control, arguments.Kind, *arguments.Look));
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
    SIZE size{};
    SendMessageW(button, BCM_GETIDEALSIZE, 0, reinterpret_cast<LPARAM>(&size));
    return static_cast<int>(size.cx);
}

}  // namespace corvina::ui
