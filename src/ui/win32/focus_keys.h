// Keys that the main window keeps for itself wherever the keyboard focus is.
#pragma once

#include <windows.h>

namespace corvina::ui {

// Leaves the Tab and the Escape key of a control to the program's own key handling. Without this the dialog manager
// moves the focus when Tab goes down, and a multi-line field closes its parent window on Escape.
void KeepFocusKeys(HWND control);

}  // namespace corvina::ui
