// The fonts of the program's windows.
#pragma once

#include <string_view>

#include "ui/win32/gdi_objects.h"
#include "ui/win32/scaling.h"

namespace corvina::ui {

// The font of labels, fields, tree and list: Tahoma in lines of 16 pixels.
UniqueFont CreateInterfaceFont(Scale scale);

// Width and height of a text in one line, in pixels.
SIZE TextExtent(HWND window, HFONT font, std::wstring_view text);

}  // namespace corvina::ui
