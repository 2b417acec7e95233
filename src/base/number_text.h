// Numbers in settings texts. Settings are edited by hand and by other versions, so any text gives a number: whatever
// cannot be read counts as 0, and what does not fit is cut to the nearest number that does.
#pragma once

#include <string_view>

namespace corvina {

// The whole number at the front of a text (blanks, a sign, digits); 0 when there are no digits.
int IntegerFromText(std::wstring_view text);

// The floating-point number at the front of a text ("1.9", "-3", "2e2"), cut to a whole number towards zero; 0 when
// there is none.
int IntegerFromFloatingText(std::wstring_view text);

}  // namespace corvina
