// Draws buttons, tabs, check boxes and radio buttons in the colours of the running scheme.
#pragma once

#include <windows.h>

#include <string>

#include "theme/button_colors.h"
#include "ui/win32/control_look.h"

namespace corvina::ui {

struct ButtonPicture {
    ButtonKind Kind = ButtonKind::Push;
    ButtonState State;
    bool ShowsFocus = false;
    bool ShowsMnemonics = false;
    std::wstring Text;
    HFONT Font = nullptr;
};

void DrawButton(HDC device, const RECT& area, const ButtonPicture& button, const ControlLook& look);

// Draws a check box without a text, on a ground of its own: for lists whose rows can be checked.
void DrawCheckBox(HDC device, const RECT& box, bool checked, COLORREF ground, const ControlLook& look);

// Fills an area with a colour, and draws a frame of that many pixels inside it.
void FillArea(HDC device, const RECT& area, COLORREF color);
void DrawFrame(HDC device, const RECT& area, COLORREF color, int width);

// The width that a button needs for its text, in pixels.
int ButtonWidth(HWND window, const ButtonPicture& button, const ControlLook& look);

}  // namespace corvina::ui
