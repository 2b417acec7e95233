// The colours of the buttons, tabs, check boxes and radio buttons that the program draws itself, in both schemes.
#pragma once

#include "theme/palette.h"

namespace corvina {

// The arrows are push buttons that show a picture instead of their texts.
enum class ButtonKind { Push, DefaultPush, UpArrow, DownArrow, Tab, CheckBox, RadioButton };

struct ButtonState {
    bool Hot = false;  // under the mouse
    bool Pressed = false;
    bool Disabled = false;
    bool Checked = false;
};

struct ButtonColors {
    Color Ground = 0;  // around the button, that of the dialog
    Color Face = 0;    // inside the frame: the whole button, or the small box before the text
    Color Frame = 0;
    Color Text = 0;
    Color Mark = 0;  // the check mark, the dot, the line below the open tab
};

// Disabled wins over pressed, pressed over hot.
ButtonColors ColorsOfButton(ButtonKind kind, const ButtonState& state, const Palette& palette, bool isDark);

// A colour between two others: `share` 0 gives `from`, 255 gives `to`.
Color Between(Color from, Color to, int share);

}  // namespace corvina
