// How the tabs and the arrows of the window of one event look.
#pragma once

#include <windows.h>

#include "ui/win32/palette_brushes.h"
#include "ui/win32/scaling.h"

namespace corvina {

enum class DetailsButton { GeneralTab, DetailsTab, Previous, Next };

// Draws a button for a WM_DRAWITEM message. `isOn` says that a tab is the selected one or that an arrow leads
// somewhere.
void DrawDetailsButton(const DRAWITEMSTRUCT& drawing, DetailsButton button, bool isOn,
                       const ui::PaletteBrushes& brushes, ui::Scale scale);

}  // namespace corvina
