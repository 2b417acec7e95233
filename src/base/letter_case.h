// Texts without regard to upper and lower case, the same on every system and in every locale: by the simple one-to-one
// mapping of the Latin, Greek, Cyrillic and Armenian alphabets. No text changes its length.
#pragma once

#include <string>
#include <string_view>

namespace corvina {

wchar_t UpperCase(wchar_t character);
std::wstring UpperCase(std::wstring_view text);

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right);

// Whether `part` occurs in `text`; an empty part occurs everywhere.
bool ContainsIgnoringCase(std::wstring_view text, std::wstring_view part);

}  // namespace corvina
