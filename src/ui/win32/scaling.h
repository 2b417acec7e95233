// Sizes that follow the resolution of the monitor. Sizes in the program are written for 96 dots per inch.
#pragma once

#include <windows.h>

namespace corvina::ui {

// Dots per inch.
class Scale {
  public:
    explicit Scale(UINT dotsPerInch = USER_DEFAULT_SCREEN_DPI) : dotsPerInch_(dotsPerInch == 0 ? 96 : dotsPerInch) {}

    // The resolution of the monitor that a window is on; the system's on versions that know only one.
    static Scale Of(HWND window);

    UINT DotsPerInch() const { return dotsPerInch_; }
    int Pixels(int size) const { return MulDiv(size, static_cast<int>(dotsPerInch_), USER_DEFAULT_SCREEN_DPI); }

    // A size in pixels of another resolution, kept the same to the eye.
    int Converted(int pixels, Scale from) const {
        return MulDiv(pixels, static_cast<int>(dotsPerInch_), static_cast<int>(from.dotsPerInch_));
    }

    bool operator==(const Scale&) const = default;

  private:
    UINT dotsPerInch_;
};

}  // namespace corvina::ui
