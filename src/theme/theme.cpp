#include "theme/theme.h"

namespace corvina {

void Theme::Apply(int mode) {
    if (mode >= static_cast<int>(DisplayMode::White) && mode <= static_cast<int>(DisplayMode::FollowSystem)) {
        mode_ = static_cast<DisplayMode>(mode);
    }
    isDark_ = mode_ == DisplayMode::Black || (mode_ == DisplayMode::FollowSystem && system_.IsSystemDark());
    colors_ = isDark_ ? DarkPalette : LightPalette;
}

bool Theme::SettingChanged(std::wstring_view changed) {
    if (!system_.IsColorChange(changed)) {
        return false;
    }
    system_.SystemColorsChanged();
    if (mode_ == DisplayMode::FollowSystem) {
        Apply(static_cast<int>(mode_));
    }
    return true;
}

}  // namespace corvina
