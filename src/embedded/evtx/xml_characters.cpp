#include "embedded/evtx/xml_characters.h"

#include <algorithm>

#include "embedded/evtx/byte_reader.h"

namespace corvina::evtx {
namespace {

struct CharacterRange {
    char32_t First;
    char32_t Last;
};

// Editions of XML differ in what they allow in names, and so do the readers of XML. These are letters for all of them.
constexpr CharacterRange NameStarts[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x131},    {0x134, 0x13E}, {0x141, 0x148}, {0x14A, 0x17E},
    {0x180, 0x1C3},   {0x388, 0x38A},   {0x38E, 0x3A1},   {0x3A3, 0x3CE}, {0x401, 0x40C}, {0x40E, 0x44F},
    {0x451, 0x45C},   {0x45E, 0x481},   {0x5D0, 0x5EA},   {0x621, 0x63A}, {0x641, 0x64A}, {0x3041, 0x3094},
    {0x30A1, 0x30FA}, {0x4E00, 0x9FA5}, {0xAC00, 0xD7A3},
};
constexpr CharacterRange NameExtras[] = {{0xB7, 0xB7}};

template <std::size_t Count>
bool IsInside(const CharacterRange (&ranges)[Count], char32_t character) {
    return std::any_of(std::begin(ranges), std::end(ranges), [character](const CharacterRange& range) {
        return character >= range.First && character <= range.Last;
    });
}

bool IsNameStart(char32_t character) {
    if (character < 0x80) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_' ||
               character == ':';
    }
    return IsInside(NameStarts, character);
}

bool IsNameCharacter(char32_t character) {
    if (character < 0x80) {
        return IsNameStart(character) || (character >= '0' && character <= '9') || character == '-' || character == '.';
    }
    return IsInside(NameStarts, character) || IsInside(NameExtras, character);
}

}  // namespace

bool IsXmlName(std::span<const std::byte> utf16) {
    const std::size_t count = utf16.size() / 2;
    for (std::size_t index = 0; index < count; ++index) {
        const char32_t character = LoadUInt16(utf16.data() + 2 * index);
        if (index == 0 ? !IsNameStart(character) : !IsNameCharacter(character)) {
            return false;
        }
    }
    return count > 0;
}

}  // namespace corvina::evtx
