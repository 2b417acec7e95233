#include "base/text_direction.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace corvina {
namespace {

// How far a letter is looked for. What is longer has one earlier or is no text.
constexpr std::size_t LongestBeginning = 2'000;

struct Range {
    std::uint32_t First;
    std::uint32_t Last;
};

// Blocks of Unicode whose letters are read from right to left: Hebrew to Arabic Extended-A with their digits, which are
// told apart below, and the presentation forms of both. Of pairs of surrogates the first halves are enough.
constexpr Range RightToLeftLetters[] = {{0x0590, 0x08FF}, {0x200F, 0x200F}, {0xD802, 0xD803},   {0xD83A, 0xD83B},
                                        {0xFB1D, 0xFDFF}, {0xFE70, 0xFEFC}, {0x10800, 0x10FFF}, {0x1E800, 0x1EFFF}};
// Digits and signs among them, which go with whatever surrounds them.
constexpr Range ArabicDigits[] = {{0x0600, 0x0607}, {0x060C, 0x060C}, {0x0660, 0x066C}, {0x06F0, 0x06F9}};
// Letters of the other direction: Latin to Armenian, the scripts from Devanagari on, those of East Asia, emoji
// excepted.
constexpr Range LeftToRightLetters[] = {
    {L'A', L'Z'},     {L'a', L'z'},     {0x00AA, 0x00AA}, {0x00B5, 0x00B5}, {0x00BA, 0x00BA},   {0x00C0, 0x00D6},
    {0x00D8, 0x00F6}, {0x00F8, 0x02B8}, {0x0370, 0x0373}, {0x0376, 0x037D}, {0x037F, 0x0482},   {0x048A, 0x0589},
    {0x0900, 0x1FFF}, {0x200E, 0x200E}, {0x2C00, 0x2DFF}, {0x3005, 0x3007}, {0x3021, 0xA48F},   {0xA4D0, 0xD7FB},
    {0xF900, 0xFB1C}, {0xFF21, 0xFF3A}, {0xFF41, 0xFF5A}, {0xFF66, 0xFFDC}, {0x20000, 0x3FFFF}, {0xD840, 0xD87F}};

template <std::size_t Size>
bool IsIn(const Range (&ranges)[Size], std::uint32_t character) {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [character](const Range& range) { return character >= range.First && character <= range.Last; });
}

TextDirection DirectionOfCharacter(wchar_t character) {
    const auto code = static_cast<std::uint32_t>(character);
    if (IsIn(LeftToRightLetters, code)) {
        return TextDirection::LeftToRight;
    }
    return IsIn(RightToLeftLetters, code) && !IsIn(ArabicDigits, code) ? TextDirection::RightToLeft
                                                                       : TextDirection::Neutral;
}

}  // namespace

TextDirection DirectionOf(std::wstring_view text) {
    for (const wchar_t character : text.substr(0, LongestBeginning)) {
        const TextDirection direction = DirectionOfCharacter(character);
        if (direction != TextDirection::Neutral) {
            return direction;
        }
    }
    return TextDirection::Neutral;
}

bool NeedsDirectionMarks(std::wstring_view text) {
    return DirectionOf(text) == TextDirection::LeftToRight &&
           (DirectionOfCharacter(text.front()) != TextDirection::LeftToRight ||
            DirectionOfCharacter(text.back()) != TextDirection::LeftToRight);
}

}  // namespace corvina
