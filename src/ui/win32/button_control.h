// Buttons, tabs, check boxes and radio buttons of the system that the program draws itself. They keep everything but
// their looks: keyboard, groups, the default button, and what a screen reader is told.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "theme/button_colors.h"
#include "ui/win32/control_look.h"

namespace corvina::ui {

// The states of a check box or radio button. While it is disabled, a click on it is ignored.
enum class CheckState { Unchecked = 0, Checked = 1, CheckedDisabled = 2, UncheckedDisabled = 3 };

struct ButtonArguments {
    HWND Parent = nullptr;
    HINSTANCE Instance = nullptr;
    ButtonKind Kind = ButtonKind::Push;
    std::wstring Text;
    int Identifier = 0;
    // Radio buttons and tabs: begins a group, in which the arrow keys go round and one is checked. The control behind
    // the group's last one begins a group, too.
    bool StartsGroup = false;
    const ControlLook* Look = nullptr;  // must outlive the control
};

// Creates the control, without a place. Clicks come as BN_CLICKED; check boxes and radio buttons check themselves.
HWND CreateButton(const ButtonArguments& arguments);

void SetCheckState(HWND button, CheckState state);
CheckState GetCheckState(HWND button);
bool IsChecked(HWND button);

// The width in pixels that the button needs for its text.
int ButtonWidthOf(HWND button);

}  // namespace corvina::ui
