#include "theme/theme.h"

namespace corvina {

void Theme::SetSystem(bool supportsDarkMode, bool asksForDark) {
    supportsDarkMode_ = supportsDarkMode;
    systemAsksForDark_ = asksForDark;
}

void Theme::Apply(int mode) {
    if (mode >= static_cast<int>(DisplayMode::White) && mode <= static_cast<int>(DisplayMode::FollowSystem)) {
        mode_ = static_cast<DisplayMode>(mode);
    }
    const bool dark = mode_ == DisplayMode::Black || (mode_ == DisplayMode::FollowSystem && systemAsksForDark_);
    colors_ = dark ? DarkPalette : LightPalette;
}

}  // namespace corvina
