// The list's header in the colours of a dark scheme; the system draws headers in light colours only.
#pragma once

#include <optional>

#include "ui/win32/common_controls.h"
#include "ui/win32/palette_brushes.h"

namespace corvina::ui {

class HeaderPainter {
  public:
    // Takes over the drawing of a list control's header. The painter must outlive the control.
    void Install(HWND list);

    // Sets the colours; light schemes leave the drawing to the system.
    void SetColors(const PaletteBrushes& brushes);

  private:
    static LRESULT CALLBACK Procedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identifier,
                                      DWORD_PTR reference);

    HWND Header() const;
    LRESULT Paint(const NMCUSTOMDRAW& painting) const;
    void DrawItem(const NMCUSTOMDRAW& painting) const;
    void FillRest(HDC device) const;

    HWND list_ = nullptr;
    std::optional<Palette> darkColors_;
};

}  // namespace corvina::ui
