// The colours of the running scheme as brushes.
#pragma once

#include <windows.h>

#include "theme/palette.h"
#include "ui/win32/gdi_objects.h"

namespace corvina::ui {

// Grounds of what is selected in a dark list or tree.
inline constexpr COLORREF DarkSelection = RGB(48, 92, 160);
inline constexpr COLORREF DarkSelectionWithoutFocus = RGB(64, 74, 100);

class PaletteBrushes {
  public:
    explicit PaletteBrushes(const Palette& palette)
        : palette_(palette),
          controlBack_(CreateSolidBrush(palette.ControlBack)),
          panel_(CreateSolidBrush(palette.Panel)),
          windowFill_(CreateSolidBrush(palette.WindowFill)) {}

    const Palette& Colors() const { return palette_; }
    HBRUSH ControlBack() const { return controlBack_.get(); }
    HBRUSH Panel() const { return panel_.get(); }
    HBRUSH WindowFill() const { return windowFill_.get(); }

    // Whether the scheme has light texts on a dark ground.
    bool IsDark() const { return GetRValue(palette_.Text) > GetRValue(palette_.ControlBack); }

    // Prepares a device context for a text on a ground and returns the ground's brush: the answer to WM_CTLCOLOR
    // messages.
    LRESULT PaintText(HDC device, COLORREF ground, HBRUSH brush) const {
        SetTextColor(device, palette_.Text);
        SetBkColor(device, ground);
        return reinterpret_cast<LRESULT>(brush);
    }

  private:
    Palette palette_;
    UniqueBrush controlBack_;
    UniqueBrush panel_;
    UniqueBrush windowFill_;
};

}  // namespace corvina::ui
