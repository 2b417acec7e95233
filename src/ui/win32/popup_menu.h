// Popup menus out of the program's resources, with texts of the current language.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>

#include "ui/win32/gdi_objects.h"

namespace corvina::ui {

struct PopupEntry {
    std::uint32_t Command = 0;  // 0: a separator
    std::wstring Text;
    bool Enabled = false;
};

// Puts texts, identifiers and states into the entries of a popup menu, by position. Entries that the menu lacks are
// added, entries that it has too many are removed.
void SetPopupEntries(HMENU popup, std::span<const PopupEntry> entries);

// Loads a popup menu of the resources; an empty one when there is no resource of that identifier.
UniqueMenu LoadPopup(HINSTANCE instance, std::uint32_t identifier);

// Shows the menu at a place of the screen until the user chooses or gives up; the choice comes to the owner as
// WM_COMMAND.
void TrackPopup(HMENU popup, HWND owner, POINT place);

// Where a control's menu opens when it was asked for with the keyboard: the middle of the control's upper part.
POINT KeyboardMenuPlace(HWND control);

}  // namespace corvina::ui
