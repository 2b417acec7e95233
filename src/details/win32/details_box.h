// The read-only fields of the window of one event: rich edit fields of the system, which show long texts at once.
#pragma once

#include <windows.h>

#include <string_view>

#include "ui/win32/palette_brushes.h"
#include "ui/win32/scaling.h"

namespace corvina {

// Creates a field; a plain one where the system has no rich ones. It leaves Tab, Enter and Escape to the window and
// hands requests for a context menu on to it.
HWND CreateDetailsBox(HWND parent, HINSTANCE instance, int identifier, bool hasRichEdit);

void SetDetailsBoxText(HWND box, std::wstring_view text, const ui::PaletteBrushes& brushes);
// Places a field in its parent, with a margin around its text.
void PlaceDetailsBox(HWND box, const RECT& place, ui::Scale scale);
void ColorDetailsBox(HWND box, const ui::PaletteBrushes& brushes);

}  // namespace corvina
