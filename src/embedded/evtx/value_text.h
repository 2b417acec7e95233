// The textual forms of values, as they stand in the XML of an event.
#pragma once

#include <cstddef>
#include <span>

#include "embedded/evtx/text_buffer.h"
#include "embedded/evtx/value.h"
#include "embedded/evtx/xml_text.h"

namespace corvina::evtx {

// Appends a value's text; the items of an array are separated by blanks. Char is char (UTF-8) or wchar_t. Every value
// has a text, whatever its size: numbers of fewer bytes than their type are taken as they are, structures that are too
// short or not valid are written as bytes. Nested binary XML has no text.
template <typename Char>
void AppendValueText(std::span<const std::byte> chunk, const Value& value, Escaping escaping, TextBuffer<Char>& text);

// A text value's bytes without the zero characters that some writers count as part of it.
std::span<const std::byte> TextBytes(std::span<const std::byte> chunk, const Value& value);

// The bits of an integer value (integers, Booleans, sizes, hexadecimal numbers, file times); signed ones extended to 64
// bits. False for values of other types and without bytes.
bool IntegerBits(std::span<const std::byte> chunk, const Value& value, std::uint64_t& bits);

}  // namespace corvina::evtx
