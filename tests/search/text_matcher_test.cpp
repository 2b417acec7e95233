// The text test with each of its options.
#include "search/text_matcher.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "search/wildcard.h"

namespace corvina {
namespace {

// The four ways of comparing, each without and with regard to case, in this order:
constexpr std::size_t Part = 0, Whole = 2, Wildcard = 4, Expression = 6;

struct Case {
    std::wstring_view Candidate;
    std::wstring_view Search;
    std::string_view Passes;  // + or - for each way: part, whole, wildcard, expression
};

const Case Cases[] = {
    {L"", L"", "++ ++ ++ ++"},
    {L"Security", L"", "++ -- -- ++"},
    {L"", L"security", "-- -- -- --"},
    {L"Security", L"Security", "++ ++ ++ ++"},
    {L"Security", L"security", "+- +- +- +-"},
    {L"My-Security-Log", L"Security", "++ -- -- ++"},
    {L"My-SECURITY-Log", L"security", "+- -- -- +-"},
    {L"Security", L"Security ", "-- -- -- --"},
    {L"ABC", L"a*", "-- -- +- ++"},
    {L"ABC", L"a?c", "-- -- +- +-"},
    {L"a*", L"a*", "++ ++ ++ ++"},
    {L"a+c", L"a+c", "++ ++ ++ --"},
    {L"aac", L"A+C", "-- -- -- +-"},
    {L"Event 4625", L"\\d+", "-- -- -- ++"},
    {L"4625", L"\\d+", "-- -- -- -+"},  // without regard to case \d is \D
    {L"Event", L"\\d+", "-- -- -- +-"},
    {L"a b", L"\\S\\s\\S", "-- -- -- -+"},
    {L"abc", L"[", "-- -- -- --"},
    {L"[", L"[", "++ ++ ++ --"},
    {L"\u00dcBER", L"\u00fcber", "+- +- +- --"},  // expressions take a to z alone as letters with two cases
    {L"\u00dcBER", L"^.ber$", "-- -- -- +-"},
    {L"\u00e9", L"[\u00e0-\u00ff]", "-- -- -- ++"},
    {std::wstring_view(L"a\0b", 3), L"b", "++ -- -- --"},  // expressions end at a zero character
    {std::wstring_view(L"a\0b", 3), L"a?b", "-- -- ++ --"},
    {L"\xD800", L"\uFFFD", "-- -- -- ++"},
};

TEST(TextMatcher, EveryOptionWithEveryOther) {
    for (unsigned bits = 0; bits < 16; ++bits) {
        TextMatcher matcher;
        EXPECT_EQ(matcher.Options(), TextMatchOptions());
        const TextMatchOptions options = {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0};
        matcher.SetOptions(options);
        EXPECT_EQ(matcher.Options(), options);
        const std::size_t way = options.UseRegularExpression ? Expression
                                : options.UseWildcard        ? Wildcard
                                : options.MatchWholeString   ? Whole
                                                             : Part;
        const std::size_t place = way / 2 * 3 + (options.MatchCase ? 1 : 0);
        for (const Case& entry : Cases) {
            EXPECT_EQ(matcher.Matches(entry.Candidate, entry.Search), entry.Passes[place] == '+')
                << testing::PrintToString(std::wstring(entry.Candidate)) << " against "
                << testing::PrintToString(std::wstring(entry.Search)) << ", options " << bits;
        }
    }
}

TEST(Wildcard, DescribesTheWholeText) {
    const struct {
        std::wstring_view Text;
        std::wstring_view Wildcard;
        bool Matches;
    } cases[] = {
        {L"", L"*", true},
        {L"", L"***", true},
        {L"", L"?", false},
        {L"abc", L"", false},
        {L"abc", L"a*c", true},
        {L"abc", L"*", true},
        {L"abc", L"???", true},
        {L"abc", L"??", false},
        {L"abc", L"????", false},
        {L"abc", L"*b", false},
        {L"abcbd", L"*b?", true},
        {L"aaab", L"*aab", true},
        {L"mississippi", L"m*iss*iss*i", true},
        {L"mississippi", L"*iss?p*", true},
        {L"mississippi", L"*iss*iss*iss*", false},
        {L"*", L"?", true},
        {L"a*c", L"a**c", true},
        {L"\xD83D\xDE00", L"?", true},
        {L"\xD83D\xDE00", L"??", false},
        {L"x\xD83D\xDE00y", L"*?y", true},
        {L"x\xD83D\xDE00y", L"*x?y*", true},
        {L"x\xD83D\xDE00y", L"*x??y*", false},
        {L"x\xD83D\xDE00y", L"*\xDE00y", false},  // half a character is none
        {L"\xD83D", L"?", true},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(MatchesWildcard(entry.Text, entry.Wildcard), entry.Matches)
            << testing::PrintToString(std::wstring(entry.Text)) << " against "
            << testing::PrintToString(std::wstring(entry.Wildcard));
    }
    EXPECT_TRUE(MatchesWildcardIgnoringCase(L"\u0160KODA 120", L"\u0161*1?0"));
    EXPECT_FALSE(MatchesWildcard(L"\u0160KODA 120", L"\u0161*1?0"));
    const std::wstring longText(100'000, L'a');
    EXPECT_FALSE(MatchesWildcard(longText, L"*a*a*a*a*a*a*a*a*b"));
}

}  // namespace
}  // namespace corvina
