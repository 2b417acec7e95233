// Wildcards as in file names: "*" stands for any run of characters, also an empty one, "?" for any one character. The
// whole text must be described. In the worst case the time is the product of the two lengths.
#pragma once

#include <string_view>

namespace corvina {

bool MatchesWildcard(std::wstring_view text, std::wstring_view wildcard);
bool MatchesWildcardIgnoringCase(std::wstring_view text, std::wstring_view wildcard);

}  // namespace corvina
