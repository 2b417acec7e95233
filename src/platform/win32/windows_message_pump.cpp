#include "platform/win32/windows_message_pump.h"

#include <windows.h>

namespace corvina {

void WindowsMessagePump::DispatchPending() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace corvina
