// Texts as the system's multi-line fields take them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvina {

// The longest text that a field is given. A field breaks its whole text into lines at once, and a record made to do
// harm can hold many times of what anybody reads.
inline constexpr std::size_t LongestFieldText = 200'000;

// The longest line that a field is given. The time to wrap a line may grow with the square of its length, which makes
// lines of 50,000 characters take many seconds.
inline constexpr std::size_t LongestFieldLine = 1'000;

// Every line break ("\n", "\r" or both) as "\r\n", zero characters as blanks. Longer lines are broken, at a blank where
// there is one near; longer texts are cut, with "..." on a line behind them.
std::wstring FieldText(std::wstring_view text);

// Lines of a name, ": " and a value, with invisible marks around the values that would be torn apart in a field that is
// read from right to left.
std::wstring WithDirectionMarks(std::wstring_view properties);

}  // namespace corvina
