// Texts of characters below 128, which are the same in UTF-8 and in every 8-bit code page.
#pragma once

#include <string_view>

namespace corvina {

// Looks at all bytes without a way out, so that compilers take many at once: most texts are of such characters anyway.
inline bool IsAscii(std::string_view text) {
    unsigned char bits = 0;
    for (const char byte : text) {
        bits |= static_cast<unsigned char>(byte);
    }
    return bits < 0x80;
}

}  // namespace corvina
