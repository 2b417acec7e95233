// The fonts of the program's windows.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "ui/win32/gdi_objects.h"
#include "ui/win32/scaling.h"

namespace corvina::ui {

// The first of these faces that is installed; Tahoma when none is.
std::wstring InterfaceFace(std::span<const std::wstring_view> wanted);

// The face of the font that a window answers to WM_GETFONT; Tahoma when it has none.
std::wstring FaceOf(HWND window);

// The font of the program's texts; labels, fields, tree and list have lines of 16 pixels at 96 dots per inch.
UniqueFont CreateInterfaceFont(Scale scale, const std::wstring& face, int lineHeight = 16);

// Width and height of a text in one line, in pixels.
SIZE TextExtent(HWND window, HFONT font, std::wstring_view text);

}  // namespace corvina::ui
