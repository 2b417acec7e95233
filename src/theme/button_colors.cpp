#include "theme/button_colors.h"

#include <initializer_list>

namespace corvina {
namespace {

int Part(Color color, int shift) {
    return static_cast<int>((color >> shift) & 0xFFU);
}

ButtonColors DarkColors(const ButtonState& state, const Palette& palette) {
    ButtonColors colors;
    colors.Face = state.Pressed ? palette.ControlBack : palette.Panel;
    // The dark scheme's hover colour is bright: it outlines, and would drown a text on it.
    colors.Frame = state.Pressed ? palette.Accent : state.Hot ? palette.Hot : Between(palette.Frame, palette.Text, 60);
    colors.Mark = palette.Hot;
    return colors;
}

ButtonColors LightColors(const ButtonState& state, const Palette& palette) {
    ButtonColors colors;
    colors.Face = state.Pressed ? palette.Accent : state.Hot ? palette.Hot : palette.Panel;
    colors.Frame = state.Pressed || state.Hot ? Between(palette.Border, palette.Text, 128) : palette.Border;
    colors.Mark = palette.Text;
    return colors;
}

}  // namespace

Color Between(Color from, Color to, int share) {
    Color mixed = 0;
    for (const int shift : {0, 8, 16}) {
        const int part = Part(from, shift) + (Part(to, shift) - Part(from, shift)) * share / 255;
        mixed |= static_cast<Color>(part) << shift;
    }
    return mixed;
}

ButtonColors ColorsOfButton(ButtonKind kind, const ButtonState& state, const Palette& palette, bool isDark) {
    ButtonState shown = state;
    if (shown.Disabled) {
        shown.Hot = false;
        shown.Pressed = false;
    }
    ButtonColors colors = isDark ? DarkColors(shown, palette) : LightColors(shown, palette);
    colors.Ground = palette.WindowFill;
    colors.Text = palette.Text;
    const bool isBox = kind == ButtonKind::CheckBox || kind == ButtonKind::RadioButton;
    if (isBox || (kind == ButtonKind::Tab && shown.Checked)) {
        // A box is a field to fill in; an open tab is one with its page.
        const bool answersTheMouse = shown.Pressed || (shown.Hot && !isDark);
        colors.Face = answersTheMouse ? colors.Face : palette.WindowFill;
    }
    if (isBox && !shown.Hot && !shown.Pressed) {
        // A box is small, and its frame is all that can be seen of it.
        colors.Frame = Between(palette.WindowFill, palette.Text, 140);
    }
    if (kind == ButtonKind::DefaultPush && !shown.Pressed && !shown.Hot) {
        colors.Frame = isDark ? palette.Accent : Between(palette.Border, palette.Text, 200);
    }
    if (shown.Disabled) {
        colors.Text = Between(palette.WindowFill, palette.Text, 140);
        colors.Mark = colors.Text;
        colors.Frame = Between(palette.WindowFill, palette.Text, 60);
    }
    return colors;
}

}  // namespace corvina
