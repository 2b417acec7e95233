// The base of the system's controls that the program draws itself. They keep everything but their looks: keyboard,
// groups, the default button, and what a screen reader is told.
#pragma once

#include <windows.h>

#include <memory>

#include "ui/win32/control_look.h"

namespace corvina::ui {

// The picture of one control; belongs to the control and goes with it.
class PaintedControl {
  public:
    virtual ~PaintedControl() = default;
    PaintedControl(const PaintedControl&) = delete;
    PaintedControl& operator=(const PaintedControl&) = delete;

    // Draws the control from now on. A system that refuses leaves it with its own looks.
    static void Install(std::unique_ptr<PaintedControl> picture);

  protected:
    // `look` must outlive the control.
    PaintedControl(HWND control, const ControlLook& look) : control_(control), look_(look) {}

    // Draws all of the control, whose client area is given.
    virtual void Draw(HDC device, const RECT& area) const = 0;
    // Answers a message of the control; the base asks the system's control.
    virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

    HWND Handle() const { return control_; }
    const ControlLook& Look() const { return look_; }
    HFONT Font() const { return reinterpret_cast<HFONT>(SendMessageW(control_, WM_GETFONT, 0, 0)); }
    bool IsHot() const { return isHot_; }
    // Whether the focus is here and the user sees where it is: not before the keyboard has been used.
    bool ShowsFocus() const;
    // Whether mnemonics are underlined.
    bool ShowsMnemonics() const;

  private:
    static LRESULT CALLBACK Procedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identifier,
                                      DWORD_PTR reference);

    void SetHot(bool hot);
    void Paint(HDC target) const;

    HWND control_;
    const ControlLook& look_;
    bool isHot_ = false;
};

}  // namespace corvina::ui
