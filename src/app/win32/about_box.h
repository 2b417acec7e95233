// The box that tells the program's name, version and licence.
#pragma once

#include "app/main_window_view.h"
#include "ui/win32/dialog.h"

namespace corvina {

class AboutBox : private ui::Dialog {
  public:
    explicit AboutBox(const AboutTexts& texts) : texts_(texts) {}

    // Shows the box over `owner` until it is closed.
    void Show(HWND owner, HINSTANCE instance, Theme& scheme);

  private:
    void CreateControls() override;
    void Layout(int width, int height) override;

    const AboutTexts& texts_;
    HWND icon_ = nullptr;
    HWND name_ = nullptr;
    HWND version_ = nullptr;
    HWND license_ = nullptr;
};

}  // namespace corvina
