// Appends the texts of a log to UTF-8 or wide text, as they are or escaped for XML. Characters that XML cannot hold
// (control characters, half surrogates) become U+FFFD when escaping, and are kept otherwise.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

#include "embedded/evtx/text_buffer.h"

namespace corvina::evtx {

enum class Escaping {
    None,       // as it is
    Text,       // between tags: & < >
    Attribute,  // between single quotes: & < > '
    Forbidden,  // only what XML cannot hold is replaced: for CDATA sections and processing instructions
};

// Char is char (UTF-8) or wchar_t. An odd last byte is ignored.
template <typename Char>
void AppendUtf16Text(std::span<const std::byte> utf16, Escaping escaping, TextBuffer<Char>& text);

// 8-bit text, read as Windows-1252: logs do not say what code page their computer had.
template <typename Char>
void AppendAnsiText(std::span<const std::byte> ansi, Escaping escaping, TextBuffer<Char>& text);

template <typename Char>
void AppendCharacter(char32_t character, Escaping escaping, TextBuffer<Char>& text);

// Characters below 128 that need no escaping.
template <typename Char>
void AppendAscii(std::string_view ascii, TextBuffer<Char>& text);

// Literals are copied in blocks of this size, so this many bytes must be readable behind each.
inline constexpr std::size_t LiteralPadding = 32;

// Finished XML in valid UTF-8 that is not all below 128, as wide text.
void AppendWideLiteral(std::string_view utf8, TextBuffer<wchar_t>& text);

// Finished XML in valid UTF-8. `ascii` says that all of it is below 128.
template <typename Char>
inline void AppendLiteral(std::string_view utf8, [[maybe_unused]] bool ascii, TextBuffer<Char>& text) {
    if constexpr (sizeof(Char) != 1) {
        if (!ascii) {
            AppendWideLiteral(utf8, text);
            return;
        }
    }
    // Most literals are short: whole blocks of a fixed size are faster than the exact number of characters.
    Char* out = text.Room(utf8.size() + LiteralPadding);
    for (std::size_t begin = 0; begin < utf8.size(); begin += LiteralPadding) {
        if constexpr (sizeof(Char) == 1) {
            std::memcpy(out + begin, utf8.data() + begin, LiteralPadding);
        } else {
            std::array<char, LiteralPadding> block;
            std::memcpy(block.data(), utf8.data() + begin, block.size());
            std::copy(block.begin(), block.end(), out + begin);
        }
    }
    text.SetEnd(out + utf8.size());
}

}  // namespace corvina::evtx
