// The place of a window, and how it is kept in the settings from one time to the next.
#pragma once

#include <string_view>

#include "platform/settings_store.h"

namespace corvina {

// The window's own rectangle on the screen, in pixels.
struct WindowPlace {
    int Left = 10;
    int Top = 10;
    int Width = 800;
    int Height = 600;

    bool operator==(const WindowPlace&) const = default;
};

// Takes what is missing from `ifMissing`. Any other text counts as the number at its front, and no place is
// refused: one off all screens may be on a monitor that comes back.
WindowPlace ReadWindowPlace(const SettingsStore& settings, std::wstring_view section,
                            const WindowPlace& ifMissing = {});

void WriteWindowPlace(SettingsStore& settings, std::wstring_view section, const WindowPlace& place);

}  // namespace corvina
