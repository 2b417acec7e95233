// Menus in the colours of a dark scheme: the system draws its menus light, whatever the window below looks like.
#pragma once

#include <windows.h>

#include "ui/win32/control_look.h"

namespace corvina::ui {

class MenuPainter {
  public:
    // `look` must outlive the painter.
    explicit MenuPainter(const ControlLook& look) : look_(look) {}

    // Takes over the drawing of a menu's entries, or gives it back to the system in a light scheme. To be called
    // whenever entries or colours have changed. The entries keep their texts.
    void Prepare(HMENU menu, bool isBar) const;

    // Fills what the entries leave free of a window's menu bar, and the line below it, which some versions draw light.
    // To be called after the window's frame has been drawn.
    void FillBar(HWND window) const;

    // For the messages WM_MEASUREITEM, WM_DRAWITEM and WM_MENUCHAR of the window that owns the menu; false and 0 when
    // they are about something else.
    bool Measure(HWND window, MEASUREITEMSTRUCT& size) const;
    bool Draw(HWND window, const DRAWITEMSTRUCT& drawing) const;
    LRESULT CharacterTyped(HMENU menu, wchar_t character) const;

  private:
    const ControlLook& look_;
};

}  // namespace corvina::ui
