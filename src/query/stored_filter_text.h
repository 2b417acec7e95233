// Texts of stored filters in a form that every XML program leaves alone. XML cannot hold control characters and half
// surrogates at all, and line breaks, tabs and blanks at either end only until the next program tidies the document up.
#pragma once

#include <string>
#include <string_view>

namespace corvina {

// Writes "_xHHHH_", with the number of the character in four hexadecimal digits, for each character that XML could
// lose, and for an underscore before an "x", which could be taken for the start of such an escape. It is the convention
// of spreadsheets and of .NET for XML names.
std::wstring EscapedFilterText(std::wstring_view text);

// The text that was escaped. Blanks and line breaks at either end do not count, so that elements may be laid out
// freely.
std::wstring UnescapedFilterText(std::wstring_view escaped);

// Without blanks, tabs and line breaks at either end.
std::wstring_view TrimmedFilterText(std::wstring_view text);

}  // namespace corvina
