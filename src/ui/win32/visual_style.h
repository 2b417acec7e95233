// Named visual styles of the system for single controls.
#pragma once

#include <windows.h>

#include "platform/win32/system_library.h"

namespace corvina::ui {

class VisualStyles {
  public:
    VisualStyles();

    // Gives a control the look of a style such as "Explorer"; nothing happens where the system has no styles.
    void Set(HWND control, const wchar_t* style) const;

    // Gives a control the looks from before there were styles.
    void Remove(HWND control) const;

  private:
    using SetWindowThemeFunction = HRESULT(WINAPI*)(HWND, LPCWSTR, LPCWSTR);

    SystemLibrary library_;
    SetWindowThemeFunction setWindowTheme_;
};

}  // namespace corvina::ui
