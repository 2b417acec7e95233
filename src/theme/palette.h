// The colours that windows and owner-drawn controls paint with: one set for each display mode.
#pragma once

#include <cstdint>

namespace corvina {

// A colour as the platform's drawing functions take it: 0x00BBGGRR.
using Color = std::uint32_t;

struct Palette {
    Color Text = 0;         // texts of dialogs, labels and edits; pen of the selected item
    Color WindowFill = 0;   // background of dialogs and main surfaces
    Color ControlBack = 0;  // background of labels, edits and their texts
    Color Accent = 0;       // pen of an owner-drawn item drawn without an index
    Color Panel = 0;        // secondary background
    Color Frame = 0;        // frame pen of owner-drawn items
    Color Border = 0;       // border pen
    Color Hot = 0;          // an owner-drawn item under the mouse
};

inline constexpr Palette DarkPalette = {0xFFFFFF, 0x271D19, 0x32231D, 0x00CC00, 0x3F3625, 0x5A3F35, 0x191919, 0x33FF33};
inline constexpr Palette LightPalette = {0x191919, 0xFFFFFF, 0xFFFFFF, 0xDCDCDC,
                                         0xF0F0F0, 0xF0F0F0, 0xBEBEBE, 0xE6E6E6};

}  // namespace corvina
