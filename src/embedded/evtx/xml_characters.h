// Which characters XML allows in texts and names. Source: the definition of XML 1.0, of whose
// editions the strictest counts.
#pragma once

#include <cstddef>
#include <span>

namespace corvina::evtx {

inline constexpr char32_t ReplacementCharacter = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr char32_t JoinSurrogates(char32_t high, char32_t low) {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

// Whether the character may stand in XML at all, as such or as a reference.
constexpr bool IsXmlCharacter(char32_t character) {
    if (character < 0x20) {
        return character == 0x09 || character == 0x0A || character == 0x0D;
    }
    return character <= 0xD7FF || (character >= 0xE000 && character <= 0xFFFD) ||
           (character >= 0x10000 && character <= 0x10FFFF);
}

// Whether the UTF-16 text is a name of an element, attribute, entity or processing instruction.
bool IsXmlName(std::span<const std::byte> utf16);

}  // namespace corvina::evtx
