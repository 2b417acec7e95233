// The way of the Tab key through the main window: the tree, the list and the fields of the details pane, in a circle.
#pragma once

#include <optional>

#include "app/main_window_view.h"

namespace corvina {

// The station after (or before) the focused one; the first one when none has the focus.
FocusStation NextFocusStation(std::optional<FocusStation> focused, bool backwards);

}  // namespace corvina
