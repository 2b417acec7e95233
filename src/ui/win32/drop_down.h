// A list of texts of which one is chosen, closed to one line. The control is the system's; its looks are the scheme's.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "ui/win32/control_look.h"

namespace corvina::ui {

struct DropDownArguments {
    HWND Parent = nullptr;
    HINSTANCE Instance = nullptr;
    int Identifier = 0;
    std::span<const std::wstring> Entries;
    std::size_t Selected = 0;
    HFONT Font = nullptr;
    const ControlLook* Look = nullptr;  // must outlive the control
};

// Creates the control, without a place. A choice comes as CBN_SELCHANGE. Its parent passes WM_DRAWITEM on.
HWND CreateDropDown(const DropDownArguments& arguments);

// Draws one entry of the open list; false when the message is not about a drop-down list.
bool DrawDropDownItem(const DRAWITEMSTRUCT& drawing, const ControlLook& look);

std::optional<std::size_t> SelectedEntry(HWND dropDown);

// Places the closed control with a height that follows the resolution, and gives the open list room for its entries.
void PlaceDropDown(HWND dropDown, int left, int top, int width, int height);

}  // namespace corvina::ui
