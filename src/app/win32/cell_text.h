// Texts of events as cells and tips of the list show them.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string_view>

namespace corvina {

// Whether a cell can show a text as it is: short, and without line breaks, tabs and other control characters.
bool FitsCell(std::wstring_view text);

// Copies as much of a text into a buffer of `size` characters (at least one) as a cell shows: one line, runs of control
// characters and blanks as a single blank, ended by a zero character.
void CopyCellText(std::wstring_view text, wchar_t* buffer, std::size_t size);

// Copies the beginning of a text into a buffer of `size` characters (at least one), ended by a zero character, without
// half of a surrogate pair at its end.
void CopyBeginning(std::wstring_view text, wchar_t* buffer, std::size_t size);

// Whether a text begins with another, in any case.
bool BeginsWith(std::wstring_view text, std::wstring_view beginning);

}  // namespace corvina
