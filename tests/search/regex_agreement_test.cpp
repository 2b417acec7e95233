// Random patterns and texts: the matcher finds what a plain one finds that tries everything, and in what both kinds of
// expressions have in common what the standard library's finds.
#include <gtest/gtest.h>
#include <random>
#include <regex>
#include <string>
#include <string_view>

#include "base/utf.h"
#include "search/fenced_block.h"
#include "search/plain_regex_matcher.h"
#include "search/tsm_regex_match.h"

namespace corvina::test {
namespace {

class RandomText {
  public:
    std::size_t Below(std::size_t limit) { return random_() % limit; }

    std::string_view OneOf(std::initializer_list<std::string_view> choices) {
        return choices.begin()[Below(choices.size())];
    }

    std::string Some(std::size_t most, std::initializer_list<std::string_view> choices) {
        std::string text;
        for (std::size_t count = Below(most + 1); count > 0; --count) {
            text += OneOf(choices);
        }
        return text;
    }

    // A pattern that means the same in both kinds of expressions. Beyond ASCII it has signs alone, since whether
    // letters there are of \w depends on the system in the standard library.
    std::string CommonPattern() {
        std::string pattern;
        for (std::size_t alternatives = 1 + Below(3); alternatives > 0; --alternatives) {
            pattern += OneOf({"", "", "", "^"});
            for (std::size_t parts = Below(4); parts > 0; --parts) {
                pattern += OneOf({"a", "b", "1", "€", ".", "\\.", "\\d", "\\D", "\\w", "\\W", "\\s", "\\S", "[ab]",
                                  "[^b]", "[a-c\\d]", "[^\\s1]", "[€-™]", "[\\]x]"});
                pattern += OneOf({"", "", "", "*", "+", "?", "{2}", "{1,2}", "{0,}", "{2,}"});
            }
            pattern += OneOf({"", "", "", "$"});
            pattern += alternatives > 1 ? "|" : "";
        }
        return pattern;
    }

  private:
    std::mt19937 random_{20240305};
};

TEST(RegexAgreement, WithTryingEverything) {
    RandomText random;
    FencedBlock block;  // so that a step before the start or behind the end of a text is noticed
    std::size_t compiled = 0;
    std::size_t found = 0;
    for (int round = 0; round < 150'000; ++round) {
        const std::string pattern =
            random.Some(12, {"a",    "a",   "b",    "é",     "1",     ".",   "^",   "$",   "?",     "?",    "*",
                             "*",    "+",   "|",    "-",     "\\d",   "\\W", "\\s", "{2}", "{0,2}", "{1,}", "[ab]",
                             "[^a]", "[a-", "c-é]", "[\\d-", "\\-b]", "]",   "[",   "\\é", "\\",    "\xC3"});
        RegexPattern tokens;
        if (!tokens.Compile(pattern)) {
            continue;
        }
        ++compiled;
        for (int texts = 0; texts < 4; ++texts) {
            const std::string text = random.Some(10, {"a", "a", "a", "b", "b", "1", "-", " ", "\\", "é", "é"}) +
                                     (random.Below(8) == 0 ? "\xC3"
                                                             "a"
                                                           : "");
            PlainRegexMatcher plain(tokens, text, 100'000);
            const auto expected = plain.Search();
            const auto occurrence = RegexMatcher(tokens, block.AtStart(text)).Search();
            ASSERT_EQ(RegexMatcher(tokens, block.AtEnd(text)).Search().has_value(), occurrence.has_value());
            ASSERT_FALSE(plain.HasGivenUp());
            ASSERT_EQ(occurrence.has_value(), expected.has_value()) << "pattern " << pattern << ", text " << text;
            ASSERT_EQ(occurrence.value_or(RegexOccurrence()).Start, expected.value_or(RegexOccurrence()).Start)
                << "pattern " << pattern << ", text " << text;
            ASSERT_EQ(occurrence.value_or(RegexOccurrence()).Length, expected.value_or(RegexOccurrence()).Length)
                << "pattern " << pattern << ", text " << text;
            found += occurrence ? 1 : 0;
        }
    }
    EXPECT_GT(compiled, 30'000U);
    EXPECT_GT(found, compiled);
    EXPECT_LT(found, 3 * compiled);
}

TEST(RegexAgreement, WithTheStandardLibrary) {
    RandomText random;
    std::size_t found = 0;
    std::size_t compared = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::string pattern = random.CommonPattern();
        const std::wregex standard(WideFromUtf8(pattern));
        for (int texts = 0; texts < 8; ++texts) {
            const std::string text = random.Some(8, {"a", "a", "b", "1", "c", " ", ".", "]", "€", "℅"});
            const bool occurs = std::regex_search(WideFromUtf8(text), standard);
            ASSERT_EQ(tsm_regex_match(pattern.c_str(), text.c_str()), occurs ? RegexOccurs : RegexDoesNotOccur)
                << "pattern " << pattern << ", text " << text;
            found += occurs ? 1 : 0;
            ++compared;
        }
    }
    EXPECT_GT(found, compared / 4);
    EXPECT_LT(found, compared * 3 / 4);
}

TEST(RegexAgreement, WhereTheTwoKindsDiffer) {
    const struct {
        const char* Rule;
        std::string Pattern;
        std::string Text;
        bool OccursHere;
    } cases[] = {
        {"a dot stands for line breaks, too", "a.b", "a\nb", true},
        {"there are no escapes of control characters", "^\\n$", "\n", false},
        {"there are no escapes of control characters", "^\\t$", "t", true},
        {"there are no escapes of places", "\\ba", "a", false},
        {"there are no groups", "^(ab)*$", "abab", false},
        {"there are no groups", "^(ab)$", "(ab)", true},
        {"question marks after repetitions repeat nothing", "^a+?$", "aa", false},
        {"question marks after repetitions repeat nothing", "^a{1,2}?$", "aa", false},
        {"numbers have 16 bits", "^a{65537}$", "a", true},
        {"an escaped hyphen is a member, and its backslash starts a range", "[\\-z]", "m", true},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(tsm_regex_match(entry.Pattern.c_str(), entry.Text.c_str()) == RegexOccurs, entry.OccursHere)
            << entry.Rule;
        bool occursThere = !entry.OccursHere;
        try {
            occursThere = std::regex_search(entry.Text, std::regex(entry.Pattern));
        } catch (const std::regex_error&) {
            // No expression at all there.
        }
        EXPECT_NE(occursThere, entry.OccursHere) << "no difference: " << entry.Rule;
    }
}

}  // namespace
}  // namespace corvina::test
