#include "search/text_matcher.h"

#include <algorithm>
#include <string>

#include "base/letter_case.h"
#include "base/utf.h"
#include "search/tsm_regex_match.h"
#include "search/wildcard.h"

namespace corvina {
namespace {

// Every byte of a character beyond ASCII is above 0x7F in UTF-8, so only the letters a to z change.
void UpperCaseAscii(std::string& utf8) {
    std::transform(utf8.begin(), utf8.end(), utf8.begin(),
                   [](char byte) { return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte; });
}

bool MatchesExpression(std::wstring_view candidate, std::wstring_view expression, bool matchCase) {
    std::string pattern = Utf8FromWide(expression);
    std::string text = Utf8FromWide(candidate);
    if (!matchCase) {
        UpperCaseAscii(pattern);
        UpperCaseAscii(text);
    }
    return tsm_regex_match(pattern.c_str(), text.c_str()) == RegexOccurs;
}

}  // namespace

bool TextMatcher::Matches(std::wstring_view candidate, std::wstring_view search) const {
    if (options_.UseRegularExpression) {
        return MatchesExpression(candidate, search, options_.MatchCase);
    }
    if (options_.UseWildcard) {
        return options_.MatchCase ? MatchesWildcard(candidate, search) : MatchesWildcardIgnoringCase(candidate, search);
    }
    if (options_.MatchWholeString) {
        return options_.MatchCase ? candidate == search : EqualIgnoringCase(candidate, search);
    }
    return options_.MatchCase ? candidate.find(search) != std::wstring_view::npos
                              : ContainsIgnoringCase(candidate, search);
}

}  // namespace corvina
