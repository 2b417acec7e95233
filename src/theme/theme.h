// The display mode of the program and the colours that follow from it.
#pragma once

#include <string_view>

#include "theme/dark_mode.h"
#include "theme/palette.h"

namespace corvina {

class Theme {
  public:
    explicit Theme(DarkModeApi& api) : system_(api) {}

    // The system's part of it: to be initialised once, and asked for marking windows.
    DarkMode& System() { return system_; }
    const DarkMode& System() const { return system_; }

    // Takes a mode's number and picks its colours. Any other number leaves the mode as it is; its colours are picked
    // again, since the system may have changed.
    void Apply(int mode);

    // A window has received WM_SETTINGCHANGE with that text; every open window tells its own. True when it spoke of the
    // colours: the window then paints itself and its controls anew.
    bool SettingChanged(std::wstring_view changed);

    DisplayMode Mode() const { return mode_; }
    const Palette& Colors() const { return colors_; }
    // Whether texts are light on a dark ground.
    bool IsDark() const { return isDark_; }

  private:
    DarkMode system_;
    DisplayMode mode_ = DisplayMode::Black;
    Palette colors_ = DarkPalette;
    bool isDark_ = true;
};

}  // namespace corvina
