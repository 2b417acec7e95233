// The direction in which a text is read, by its letters.
#pragma once

#include <string_view>

namespace corvina {

enum class TextDirection {
    LeftToRight,
    RightToLeft,
    Neutral  // no letter at all, such as a number
};

// The direction of the first letter that has one. The text may be long: only its beginning is looked at.
TextDirection DirectionOf(std::wstring_view text);

// Whether a text that is read from left to right would be torn apart inside a line of the other direction: its ends are
// no letters and would move to the line's other side, as the brackets of "{A0B1}" do.
bool NeedsDirectionMarks(std::wstring_view text);

// Invisible; what stands between two of them is not torn apart.
inline constexpr wchar_t LeftToRightMark = 0x200E;

}  // namespace corvina
