// Appends the texts of a log to UTF-8 or wide text, as they are or escaped for XML. Characters that XML cannot hold
// (control characters, half surrogates) become U+FFFD when escaping, and are kept otherwise.
#pragma once

#include <cstddef>
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

// Finished XML in valid UTF-8. `ascii` says that all of it is below 128.
template <typename Char>
void AppendFinished(std::string_view utf8, bool ascii, TextBuffer<Char>& text);

}  // namespace corvina::evtx
