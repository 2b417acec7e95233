// The program's message loop.
#pragma once

#include "app/win32/main_window.h"

namespace corvina {

// Handles one message of the thread's queue. Released keys go to the main window whatever has the focus; everything
// else is offered to the dialog manager first.
void ProcessMessage(MainWindow& window, const MSG& message);

// Runs until the queue ends. Returns the exit code of the quit message.
int RunMessageLoop(MainWindow& window);

}  // namespace corvina
