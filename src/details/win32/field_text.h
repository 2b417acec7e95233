// Texts as the system's multi-line fields take them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvina {

// The longest text that a field is given. A field breaks its whole text into lines at once, and a record made to do
// harm can hold many times of what anybody reads.
inline constexpr std::size_t LongestFieldText = 500'000;

// Every line break ("\n", "\r" or both) as "\r\n", zero characters as blanks, cut to LongestFieldText characters of the
// original with "..." behind them.
std::wstring FieldText(std::wstring_view text);

}  // namespace corvina
