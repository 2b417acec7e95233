#include "ui/win32/window.h"

#include <exception>
#include <utility>

namespace corvina::ui {

Window::~Window() {
    DestroyHandle();
}

void Window::DestroyHandle() {
    if (handle_ != nullptr) {
        // Messages that the destruction sends must not reach an object that is going away.
        SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
        DestroyWindow(std::exchange(handle_, nullptr));
    }
}

bool Window::RegisterWindowClass(WNDCLASSEXW description) {
    description.cbSize = sizeof(description);
    description.lpfnWndProc = &Window::Procedure;
    return RegisterClassExW(&description) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool Window::CreateHandle(const WindowArguments& arguments) {
    const RECT& place = arguments.Place;
    const bool anywhere = arguments.DefaultPlace;
    CreateWindowExW(arguments.ExtendedStyle, arguments.ClassName.c_str(), arguments.Title.c_str(), arguments.Style,
                    anywhere ? CW_USEDEFAULT : static_cast<int>(place.left),
                    anywhere ? CW_USEDEFAULT : static_cast<int>(place.top),
                    anywhere ? CW_USEDEFAULT : static_cast<int>(place.right - place.left),
                    anywhere ? CW_USEDEFAULT : static_cast<int>(place.bottom - place.top), arguments.Parent, nullptr,
                    arguments.Instance, this);
    return handle_ != nullptr;
}

LRESULT Window::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcW(handle_, message, wParam, lParam);
}

LRESULT CALLBACK Window::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* created = static_cast<Window*>(creation->lpCreateParams);
        created->handle_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
    }
    auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        self->handle_ = nullptr;
        return DefWindowProcW(window, message, wParam, lParam);
    }
    try {
        return self->HandleMessage(message, wParam, lParam);
    } catch (const std::exception&) {
        // Exceptions must not pass through the system's code that called us. The message counts as handled: what ran
        // out of memory half-way would only fail again in the default handling.
        OutputDebugStringW(L"A window message could not be handled.\n");
        return 0;
    }
}

}  // namespace corvina::ui
