// Keys that the main window keeps for itself wherever the keyboard focus is.
#pragma once

#include <windows.h>

namespace corvina::ui {

// Leaves the Tab and the Escape key of a control to the program's own key handling. Without this the dialog manager
// moves the focus when Tab goes down, and a multi-line field closes its parent window on Escape. Alt and F10 lead to
// the menu bar from every control.
void KeepFocusKeys(HWND control);

}  // namespace corvina::ui
