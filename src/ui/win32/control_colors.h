// The scheme's colours for controls of the system: what the system can do by itself, and what must be told control by
// control where it cannot.
#pragma once

#include <windows.h>

#include "theme/theme.h"
#include "ui/win32/control_look.h"
#include "ui/win32/visual_style.h"

namespace corvina::ui {

// Gives a control of any class its visual style and its colours. To be called again when the scheme has changed; the
// caller then redraws.
void ColorControl(HWND control, const ControlLook& look, Theme& scheme, const VisualStyles& styles);

// Does so with every child of a window.
void ColorChildren(HWND window, const ControlLook& look, Theme& scheme, const VisualStyles& styles);

// Draws a control's sunken edge in the colours of a dark scheme, in place of the system's light one. Once for a
// control; `look` must outlive it.
void PaintEdge(HWND control, const ControlLook& look);

// The colours of a window's frame and title bar.
void ColorFrame(HWND window, Theme& scheme);

}  // namespace corvina::ui
