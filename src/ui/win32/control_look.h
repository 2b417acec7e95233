// What a control that the program draws itself needs to know of its window: the colours and the resolution. The window
// owns it and changes it; controls look at it whenever they draw.
#pragma once

#include <memory>

#include "ui/win32/palette_brushes.h"
#include "ui/win32/scaling.h"

namespace corvina::ui {

struct ControlLook {
    std::unique_ptr<PaletteBrushes> Brushes;
    Scale Resolution;
};

}  // namespace corvina::ui
