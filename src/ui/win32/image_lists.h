// Lists of small icons for list and tree controls.
#pragma once

#include <span>

#include "ui/win32/gdi_objects.h"
#include "ui/win32/scaling.h"

namespace corvina::ui {

// The icons of these resource identifiers, in their order, as large as small icons are at that resolution. An icon that
// cannot be loaded leaves a blank picture, so that the indexes of the others stay right.
UniqueImageList LoadSmallIcons(HINSTANCE instance, std::span<const int> identifiers, Scale scale);

}  // namespace corvina::ui
