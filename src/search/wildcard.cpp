#include "search/wildcard.h"

#include <cstddef>

#include "base/letter_case.h"
#include "base/utf.h"

namespace corvina {
namespace {

// When the text cannot go on, the last star takes one character more. Earlier stars need not be asked again: what
// stands between them and the last one has been found at the first place, which leaves the most text for the rest.
template <typename Equal>
bool Matches(std::wstring_view text, std::wstring_view wildcard, Equal equal) {
    constexpr std::size_t None = std::wstring_view::npos;
    std::size_t textIndex = 0;
    std::size_t wildcardIndex = 0;
    std::size_t afterStar = None;  // in the wildcard
    std::size_t starEnd = 0;       // in the text: what the last star has taken ends here
    while (textIndex < text.size()) {
        const std::wstring_view signs = wildcard.substr(wildcardIndex);
        if (signs.starts_with(L'*')) {
            afterStar = ++wildcardIndex;
            starEnd = textIndex;
        } else if (signs.starts_with(L'?')) {
            textIndex += UnitsOfCharacter(text, textIndex);
            ++wildcardIndex;
        } else if (!signs.empty() && equal(text[textIndex], signs.front())) {
            ++textIndex;
            ++wildcardIndex;
        } else if (afterStar != None) {
            starEnd += UnitsOfCharacter(text, starEnd);
            textIndex = starEnd;
            wildcardIndex = afterStar;
        } else {
            return false;
        }
    }
    return wildcard.find_first_not_of(L'*', wildcardIndex) == None;
}

}  // namespace

bool MatchesWildcard(std::wstring_view text, std::wstring_view wildcard) {
    return Matches(text, wildcard, [](wchar_t one, wchar_t other) { return one == other; });
}

bool MatchesWildcardIgnoringCase(std::wstring_view text, std::wstring_view wildcard) {
    return Matches(text, wildcard, [](wchar_t one, wchar_t other) { return UpperCase(one) == UpperCase(other); });
}

}  // namespace corvina
