// The bytes of characters in UTF-8, as regular expressions see them: the first byte tells how many there are, and the
// others must be following bytes. More is not asked, so overlong forms, surrogates and numbers beyond Unicode pass.
#pragma once

#include <cstddef>
#include <string_view>

namespace corvina {

// How many bytes the character that starts with `first` has; 0 if none starts so.
constexpr std::size_t Utf8Length(char first) {
    const auto byte = static_cast<unsigned char>(first);
    if (byte < 0x80) {
        return 1;
    }
    if (byte < 0xC0 || byte > 0xF7) {
        return 0;
    }
    return byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

// The first character of the bytes; empty if it is invalid or cut short, or if there is none.
std::string_view FirstCharacter(std::string_view bytes);

// The characters before the first place that is not UTF-8.
std::string_view ValidPart(std::string_view bytes);

}  // namespace corvina
