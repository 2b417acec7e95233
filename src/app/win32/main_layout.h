// Where the parts of the main window stand.
#pragma once

#include <windows.h>

#include "ui/win32/scaling.h"

namespace corvina {

struct SplitterPositions {
    int Vertical = 250;    // pixels between the left edge and the middle of the bar beside the tree
    int Horizontal = 250;  // pixels between the list's top edge and the middle of the bar below it
};

struct MainLayout {
    RECT Tree{};
    RECT VerticalBar{};
    RECT Caption{};
    RECT List{};
    RECT HorizontalBar{};
    RECT Details{};
    RECT StatusText{};
    RECT VersionText{};
};

// Places everything in a client area of that size. Splitters stay where they are wanted as far as each part keeps room
// for itself; `versionWidth` is the width of the version's text in pixels.
MainLayout ComputeMainLayout(SIZE client, SplitterPositions splitters, int versionWidth, ui::Scale scale);

// The positions as far as a client area of that size allows them.
SplitterPositions AllowedSplitters(SIZE client, SplitterPositions wanted, ui::Scale scale);

// The list's top edge in the client area.
int ListTop(ui::Scale scale);

}  // namespace corvina
