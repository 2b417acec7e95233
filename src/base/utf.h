// Conversions between the text forms that the program meets: UTF-16 little-endian in files, UTF-8 in tools and settings
// of the embedded event log, and the program's own wide texts (UTF-16 on Windows, UTF-32 elsewhere).
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace corvina {

// Appends UTF-16 little-endian bytes as wide text. Half surrogates are kept as they are, so that nothing is lost. An
// odd last byte is ignored.
void AppendUtf16(std::span<const std::byte> utf16, std::wstring& text);

// UTF-8 to wide text. Bytes that are not UTF-8 become U+FFFD.
std::wstring WideFromUtf8(std::string_view utf8);

// Wide text to UTF-8. Half surrogates become U+FFFD.
std::string Utf8FromWide(std::wstring_view text);
void AppendUtf8(std::wstring_view text, std::string& utf8);

// Appends UTF-16 little-endian bytes as UTF-8. Half surrogates become U+FFFD.
void AppendUtf8FromUtf16(std::span<const std::byte> utf16, std::string& utf8);

// How many elements of the text the character at `index` takes: 2 for a surrogate pair, 1 for everything else.
std::size_t UnitsOfCharacter(std::wstring_view text, std::size_t index);

// Wide text to UTF-16 little-endian bytes.
void AppendUtf16Bytes(std::wstring_view text, std::string& bytes);

}  // namespace corvina
