// Numbers out of texts from outside: all of the text or nothing.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace corvina {

// The value of a hexadecimal digit in either case.
std::optional<unsigned> HexDigitValue(wchar_t digit);

// A decimal number, or a hexadecimal one after "0x" or "0X". None when the text is anything else (blanks and signs
// included) or its number is above `highest`.
std::optional<std::uint64_t> ParseUnsigned(std::wstring_view text,
                                           std::uint64_t highest = std::numeric_limits<std::uint64_t>::max());

}  // namespace corvina
