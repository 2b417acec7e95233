// The direction in which windows are laid out. The system mirrors the windows of languages that are written from right
// to left: their client coordinates and devices begin at the right edge, so that layouts and drawing need not know of
// it. Controls take the direction of their window when they are created; windows do not take that of their owner, so
// what opens over a window asks here.
#pragma once

#include <windows.h>

namespace corvina::ui {

bool IsMirrored(HWND window);

// The extended style of a window that opens over another and is laid out like it.
DWORD LayoutLike(HWND owner);

// Lays a window with all controls in it out in that direction. What is shown is drawn anew, but whoever places the
// controls has to place them again, and text fields keep the reading direction that they were created with.
void SetMirrored(HWND window, bool mirrored);

// A rectangle of the screen in the coordinates of a window's whole device (GetWindowDC).
RECT InWindowDevice(HWND window, RECT screenArea);

// The extended style by which a list draws without flicker: LVS_EX_DOUBLEBUFFER or nothing. Some versions turn over
// what a mirrored list has drawn in memory, texts included.
DWORD ListBuffering(HWND list);

// Gives those of the bits `which` that are in `bits` to a window and takes the others; false when it is so already.
bool ChangeExtendedStyle(HWND window, LONG_PTR which, LONG_PTR bits);

// Lets a window compute and draw its frame and everything in it anew.
void RedrawWithFrame(HWND window);

}  // namespace corvina::ui
