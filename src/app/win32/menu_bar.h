// The main window's menu bar: the menus of the selected log, of the selected events and of the program, each filled
// anew when it opens.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "app/menus.h"
#include "i18n/language.h"
#include "ui/win32/gdi_objects.h"

namespace corvina {

class MenuBar {
  public:
    // Gives the entries of one of the CORVINA_ID_MENU_ menus.
    using EntrySource = std::function<std::vector<MenuEntry>(std::uint32_t)>;

    explicit MenuBar(EntrySource entries) : entries_(std::move(entries)) {}

    // Makes the bar in the given language and gives it to a window, which owns it from then on.
    void Attach(HWND window, HINSTANCE instance, const i18n::Language& language);

    // A popup is about to open; false when it is not one of the bar's.
    bool PopupOpens(HMENU popup) const;

  private:
    struct Popup {
        std::uint32_t Menu = 0;
        int TitleSlot = 0;
        HMENU Handle = nullptr;
    };

    EntrySource entries_;
    std::vector<Popup> popups_;
};

// Fills a popup menu with entries of the program.
void FillPopup(HMENU popup, const std::vector<MenuEntry>& entries);

}  // namespace corvina
