// The base of every window class that the program defines itself: it ties the system's window procedure to an object.
#pragma once

#include <windows.h>

#include <string>

namespace corvina::ui {

// What CreateWindowExW is called with.
struct WindowArguments {
    std::wstring ClassName;
    std::wstring Title;
    DWORD Style = 0;
    DWORD ExtendedStyle = 0;
    RECT Place = {};  // left, top, right, bottom; ignored with DefaultPlace
    bool DefaultPlace = false;
    HWND Parent = nullptr;
    HINSTANCE Instance = nullptr;
};

class Window {
  public:
    Window() = default;
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    HWND Handle() const { return handle_; }

    // Registers a class whose windows are made by objects of this base; the window procedure is filled in here. A class
    // that is registered already counts as success.
    static bool RegisterWindowClass(WNDCLASSEXW description);

  protected:
    // Creates the window; false when the system refuses. HandleMessage is called from inside.
    bool CreateHandle(const WindowArguments& arguments);

    // Destroys the window with its children. A class whose children refer to its members calls this in its own
    // destructor.
    void DestroyHandle();

    virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND handle_ = nullptr;
};

}  // namespace corvina::ui
