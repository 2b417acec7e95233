#include "search/utf8_sequence.h"

#include <algorithm>

namespace corvina {

std::string_view FirstCharacter(std::string_view bytes) {
    const std::size_t length = bytes.empty() ? 0 : Utf8Length(bytes.front());
    if (length == 0 || length > bytes.size()) {
        return {};
    }
    const std::string_view character = bytes.substr(0, length);
    const bool isWhole = std::all_of(character.begin() + 1, character.end(),
                                     [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; });
    return isWhole ? character : std::string_view();
}

std::string_view ValidPart(std::string_view bytes) {
    std::size_t end = 0;
    while (end < bytes.size()) {
        const bool isAscii = static_cast<unsigned char>(bytes[end]) < 0x80;
        const std::size_t length = isAscii ? 1 : FirstCharacter(bytes.substr(end)).size();
        if (length == 0) {
            break;
        }
        end += length;
    }
    return bytes.substr(0, end);
}

}  // namespace corvina
