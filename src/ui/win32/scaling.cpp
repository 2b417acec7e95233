#include "ui/win32/scaling.h"

namespace corvina::ui {

Scale Scale::Of(HWND window) {
    // The function is younger than the oldest system that the program runs on, so it cannot be imported by name.
    using GetDpiForWindowFunction = UINT(WINAPI*)(HWND);
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    if (user != nullptr) {
        const auto getDpi =
            reinterpret_cast<GetDpiForWindowFunction>(reinterpret_cast<void*>(GetProcAddress(user, "GetDpiForWindow")));
        if (getDpi != nullptr) {
            return Scale(getDpi(window));
        }
    }
    const HDC device = GetDC(window);
    const int dotsPerInch = GetDeviceCaps(device, LOGPIXELSX);
    ReleaseDC(window, device);
    return Scale(static_cast<UINT>(dotsPerInch));
}

}  // namespace corvina::ui
