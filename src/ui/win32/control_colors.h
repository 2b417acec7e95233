// The scheme's colours for controls of the system: what the system can do by itself, and what must be told control by
// control where it cannot.
#pragma once

#include <windows.h>

#include "theme/theme.h"
#include "ui/win32/common_controls.h"
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

// The answer to a list's NM_CUSTOMDRAW: selected rows of a dark scheme get a ground on which its light texts can be
// read. The system's own mark is light.
LRESULT PaintListRow(NMLVCUSTOMDRAW& painting, const ControlLook& look);

// Whether a control is a list that NM_CUSTOMDRAW can come from.
bool IsList(HWND control);

// The colours of a window's frame and title bar.
void ColorFrame(HWND window, Theme& scheme);

}  // namespace corvina::ui
