#include "app/win32/message_loop.h"

namespace corvina {

void ProcessMessage(MainWindow& window, const MSG& message) {
    if (message.message == WM_KEYUP) {
        window.KeyReleased(message);
        return;
    }
    MSG offered = message;
    if (!IsDialogMessageW(window.Handle(), &offered)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

int RunMessageLoop(MainWindow& window) {
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        ProcessMessage(window, message);
    }
    return static_cast<int>(message.wParam);
}

}  // namespace corvina
