#include "theme/button_colors.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace corvina {
namespace {

// Luminance and contrast as the Web Content Accessibility Guidelines define them.
double Luminance(Color color) {
    const auto part = [color](int shift) {
        const double value = static_cast<double>((color >> shift) & 0xFFU) / 255;
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(0) + 0.7152 * part(8) + 0.0722 * part(16);
}

double Contrast(Color one, Color other) {
    const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

bool IsBox(ButtonKind kind) {
    return kind == ButtonKind::CheckBox || kind == ButtonKind::RadioButton;
}

class ButtonColorsTest : public testing::TestWithParam<bool> {
  protected:
    ButtonColors Of(ButtonKind kind, const ButtonState& state) const {
        return ColorsOfButton(kind, state, GetParam() ? DarkPalette : LightPalette, GetParam());
    }
};

TEST_P(ButtonColorsTest, TextsAndMarksCanBeReadInEveryState) {
    for (const ButtonKind kind : {ButtonKind::Push, ButtonKind::DefaultPush, ButtonKind::UpArrow, ButtonKind::Tab,
                                  ButtonKind::CheckBox, ButtonKind::RadioButton}) {
        for (int bits = 0; bits < 16; ++bits) {
            const ButtonState state{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0};
            const ButtonColors colors = Of(kind, state);
            const double wanted = state.Disabled ? 3.0 : 4.5;
            EXPECT_GE(Contrast(colors.Text, IsBox(kind) ? colors.Ground : colors.Face), wanted) << bits;
            EXPECT_GE(Contrast(colors.Mark, colors.Face), 3.0) << bits;
            if (IsBox(kind) && !state.Disabled) {
                EXPECT_GE(Contrast(colors.Frame, colors.Ground), 3.0) << "the box cannot be seen, state " << bits;
            }
        }
    }
}

TEST_P(ButtonColorsTest, StatesLookDifferent) {
    const auto differ = [](const ButtonColors& one, const ButtonColors& other) {
        return one.Face != other.Face || one.Frame != other.Frame || one.Text != other.Text;
    };
    for (const ButtonKind kind : {ButtonKind::Push, ButtonKind::Tab, ButtonKind::CheckBox, ButtonKind::RadioButton}) {
        const ButtonColors plain = Of(kind, {});
        EXPECT_TRUE(differ(plain, Of(kind, {.Hot = true})));
        EXPECT_TRUE(differ(plain, Of(kind, {.Disabled = true})));
        EXPECT_TRUE(differ(Of(kind, {.Hot = true}), Of(kind, {.Hot = true, .Pressed = true})));
        // What does not answer must not look as if it did.
        EXPECT_FALSE(differ(Of(kind, {.Disabled = true}), Of(kind, {.Hot = true, .Pressed = true, .Disabled = true})));
    }
    EXPECT_TRUE(differ(Of(ButtonKind::Push, {}), Of(ButtonKind::DefaultPush, {})));
    EXPECT_TRUE(differ(Of(ButtonKind::Tab, {}), Of(ButtonKind::Tab, {.Checked = true})));
}

INSTANTIATE_TEST_SUITE_P(BothSchemes, ButtonColorsTest, testing::Bool(),
                         [](const auto& scheme) { return scheme.param ? "Dark" : "Light"; });

}  // namespace
}  // namespace corvina
