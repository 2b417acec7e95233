// The display mode of the program and the colours that follow from it.
#pragma once

#include "theme/palette.h"

namespace corvina {

enum class DisplayMode : int { White = 0, Black = 1, FollowSystem = 2 };

class Theme {
  public:
    // What the system can do, found out once at start: whether it draws dark windows, and whether it asks programs to
    // be dark.
    void SetSystem(bool supportsDarkMode, bool asksForDark);
    bool SupportsDarkMode() const { return supportsDarkMode_; }

    // Takes a mode's number and picks its colours. Any other number leaves the mode as it is; its colours are picked
    // again, since the system may have changed.
    void Apply(int mode);

    DisplayMode Mode() const { return mode_; }
    const Palette& Colors() const { return colors_; }

  private:
    DisplayMode mode_ = DisplayMode::Black;
    Palette colors_ = DarkPalette;
    bool supportsDarkMode_ = false;
    bool systemAsksForDark_ = false;
};

}  // namespace corvina
