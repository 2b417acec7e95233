// Texts of windows and fields.
#pragma once

#include <windows.h>

#include <string>

namespace corvina::ui {

// All of a window's caption or a field's text.
std::wstring TextOf(HWND window);

}  // namespace corvina::ui
