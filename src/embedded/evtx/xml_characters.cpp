#include "embedded/evtx/xml_characters.h"

#include <algorithm>

#include "embedded/evtx/byte_reader.h"

namespace corvina::evtx {
namespace {

struct CharacterRange {
    char32_t First;
    char32_t Last;
};

constexpr CharacterRange NameStarts[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D},
    {0x2070, 0x218F}, {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
constexpr CharacterRange NameExtras[] = {{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

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
        const bool first = index == 0;
        char32_t character = LoadUInt16(utf16.data() + 2 * index);
        if (IsHighSurrogate(character) && index + 1 < count) {
            const char32_t low = LoadUInt16(utf16.data() + 2 * index + 2);
            if (IsLowSurrogate(low)) {
                character = JoinSurrogates(character, low);
                ++index;
            }
        }
        if (first ? !IsNameStart(character) : !IsNameCharacter(character)) {
            return false;
        }
    }
    return count > 0;
}

}  // namespace corvina::evtx
