// What a control that the program draws itself needs to know of its window: the colours, the resolution and the face of
// its font. The window owns it and changes it; controls look at it whenever they draw.
#pragma once

#include <memory>
#include <string>

#include "ui/win32/palette_brushes.h"
#include "ui/win32/scaling.h"

namespace corvina::ui {

struct ControlLook {
    std::unique_ptr<PaletteBrushes> Brushes;
    Scale Resolution;
    std::wstring Face;
};

}  // namespace corvina::ui
