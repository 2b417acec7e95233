// What the signs of regular expressions mean, the fixed sizes, texts that are not UTF-8, and long texts.
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <initializer_list>
#include <new>
#include <string>
#include <vector>

#include "search/regex_matcher.h"
#include "search/regex_pattern.h"
#include "search/tsm_regex_match.h"

namespace {
std::size_t allocations = 0;
}

void* operator new(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace corvina {
namespace {

constexpr std::uint32_t Yes = RegexOccurs;
constexpr std::uint32_t No = RegexDoesNotOccur;
constexpr std::uint32_t Bad = RegexMalformed;

struct Case {
    std::string Pattern;
    std::string Text;
    std::uint32_t Status;
};

void Check(std::initializer_list<Case> cases) {
    for (const Case& entry : cases) {
        EXPECT_EQ(tsm_regex_match(entry.Pattern.c_str(), entry.Text.c_str()), entry.Status)
            << "pattern " << testing::PrintToString(entry.Pattern) << ", text " << testing::PrintToString(entry.Text);
    }
}

std::string Times(std::size_t count, std::string_view part) {
    std::string text;
    while (count-- > 0) {
        text += part;
    }
    return text;
}

TEST(Regex, CharactersAndTheirClassesOccurAnywhere) {
    Check({{"", "", Yes},          {"", "x", Yes},
           {"b", "abc", Yes},      {"bc", "abc", Yes},
           {"ac", "abc", No},      {"a", "", No},
           {".", "", No},          {"a.c", "a\nc", Yes},
           {"\\n", "\n", No},      {"\\n", "n", Yes},
           {"\\.", "x", No},       {"\\.", ".", Yes},
           {"\\\\", "\\", Yes},    {"]", "]", Yes},
           {"}", "}", Yes},        {"(a)", "a", No},
           {"(a)", "(a)", Yes},    {"\\d", "x7", Yes},
           {"\\d", "x", No},       {"\\D", "77", No},
           {"\\D", "7x", Yes},     {"\\w\\w\\w", "_Z0", Yes},
           {"\\w", "-", No},       {"\\W", "aZ_0", No},
           {"\\W", "a-", Yes},     {"\\S", " \t\n\v\f\r", No},
           {"a\\sb", "a\vb", Yes}, {"\\s", "\b\x0E", No}});
}

TEST(Regex, CharactersOfSeveralBytesAreOneCharacter) {
    Check({{"ä", "ä", Yes},      {"ä", "ö", No},        {"^.$", "ä", Yes},    {"^.$", "😀", Yes},
           {"^.$", "ää", No},    {"[à-ÿ]", "é", Yes},   {"[à-ÿ]", "z", No},   {"[a-é]", "é", Yes},
           {"[a-é]", "ê", No},   {"[à-😀]", "日", Yes},  {"[à-😀]", "😁", No},   {"\\w", "é", No},
           {"\\W", "é", Yes},    {"\\D\\S", "éé", Yes}, {"\\é", "é", Yes},    {"[\\é]", "é", Yes},
           {"^[^é]$", "é", No},  {"^[^é]$", "日", Yes}, {"^é*$", "ééé", Yes}, {"^é{3}$", "ééé", Yes},
           {"é+é$", "xéé", Yes}, {"é+éé", "éé", No}});
}

TEST(Regex, PlacesAndAlternatives) {
    Check({{"^$", "", Yes},      {"^$", "x", No},        {"$", "", Yes},        {"$", "x", Yes},     {"^", "x", Yes},
           {"^b", "ab", No},     {"a$", "ab", No},       {"b$", "ab", Yes},     {"a$b", "a$b", No},  {"a^b", "a^b", No},
           {"^^a", "a", No},     {"a$$", "a", No},       {"a^*b", "ab", Yes},   {"a$*b", "ab", Yes}, {"$?a", "a", Yes},
           {"$+", "", No},       {"ab|cd", "xxcd", Yes}, {"ab|cd", "acbd", No}, {"^a|b", "cb", Yes}, {"a|^b", "cb", No},
           {"a$|b", "bx", Yes},  {"a|", "x", Yes},       {"|a", "x", Yes},      {"a||b", "", Yes},   {"a*|b", "", Yes},
           {"ab+|c", "xc", Yes}, {"x|y|z$", "az", Yes},  {"x|y|^z", "az", No}});
}

TEST(Regex, Repetitions) {
    Check({{"^ab*c$", "ac", Yes},     {"^ab*c$", "abbbc", Yes},  {"^ab+c$", "ac", No},
           {"^ab+c$", "abbc", Yes},   {"^ab?c$", "ac", Yes},     {"^ab?c$", "abc", Yes},
           {"^ab?c$", "abbc", No},    {"a*ab", "aaab", Yes},     {"a+ab", "ab", No},
           {"a{2,}", "aa", Yes},      {"a{2,}", "a", No},        {"a{0}", "", Yes},
           {"^a{2}$", "aaa", No},     {"^a{2,3}$", "aaa", Yes},  {"^a{2,3}$", "aaaa", No},
           {"^a{0,1}b", "aab", No},   {"^a{1}a{1}$", "aa", Yes}, {"\\d{1,3}\\.\\d{1,3}", "x10.200", Yes},
           {"[ab]{3}", "xabbx", Yes}, {"^a{2,}b", "aaaab", Yes}, {"^a*b{2}c?$", "aabb", Yes}});
}

TEST(Regex, RepetitionsOfNothingAndOfRepetitionsMatchNothingOfTheirOwn) {
    Check({{"*", "*", No},
           {"*a", "a", No},
           {"+", "+", No},
           {"?", "?", No},
           {"{2}", "", No},
           {"{2}", "{2}", No},
           {"a|*", "x", No},
           {"^*", "x", No},
           {"**", "", Yes},
           {"??", "", Yes},
           {"{2}?", "", Yes},
           {"*{0}", "", Yes},
           {"a+?", "a", No},
           {"a*?", "a", No},
           {"a{1}?", "a", No},
           {"a{2}{3}", "aaaaaa", No}});
}

TEST(Regex, NumbersOfRepetitionsAreTakenModulo65536) {
    const std::string enough(4464, 'a');
    const std::string tooFew = enough.substr(1);
    Check({{"a{70000}", enough, Yes},
           {"a{70000}", tooFew, No},
           {"^a{0,65536}$", "a", No},
           {"^a{0,65537}$", "a", Yes},
           {"^a{65536}$", "", Yes},
           {"a{5,65540}", "aaaaa", Bad},
           {"^a{1,}$", std::string(65535, 'a'), Yes},
           {"^a{1,}$", std::string(65536, 'a'), No}});
}

TEST(Regex, Classes) {
    Check({{"[a-c]", "b", Yes},     {"[a-c]", "-", No},      {"[a-c]", "d", No},      {"[-a]", "-", Yes},
           {"[a-]", "-", Yes},      {"[x-]", "x-", Yes},     {"^[a-c-e]$", "d", Yes}, {"[a-c-e]", "-", No},
           {"[a-c-e]", "f", No},    {"[c-a]", "b", No},      {"[c-a]", "a", Yes},     {"[^a-c]", "abc", No},
           {"[^a-c]", "abcd", Yes}, {"[^a]", "", No},        {"[a^]", "^", Yes},      {"[^^]", "^", No},
           {"[.$*+?{|]", ".", Yes}, {"[.]", "a", No},        {"[[]", "[", Yes},       {"[\\]]", "]", Yes},
           {"[\\]]", "\\", No},     {"[\\\\]", "\\", Yes},   {"[\\d_]", "5", Yes},    {"[\\d_]", "d", No},
           {"[^\\d]", "5", No},     {"[\\D]", "5", No},      {"[\\w]", "z", Yes},     {"[\\W]", "z", No},
           {"[\\s]", "\t", Yes},    {"[\\S]", "\t", No},     {"[\\n]", "n", Yes},     {"[a\\-z]", "-", Yes},
           {"[a\\-z]", "m", Yes},   {"[a\\-z]", "Z", No},    {"[\\d-z]", "-", No},    {"[--a]", "-", Yes},
           {"[+--]", ",", Yes},     {"[a-][-b]", "--", Yes}, {"[ab][cd]", "bc", Yes}, {"[ab][cd]", "ab", No}});
}

TEST(Regex, MalformedPatternsAreToldApart) {
    Check({{"[]", "]", Bad},
           {"[]a]", "a", Bad},
           {"[^]", "x", Bad},
           {"[^]a]", "x", Bad},
           {"[", "x", Bad},
           {"[^", "x", Bad},
           {"[abc", "a", Bad},
           {"[abc\\", "a", Bad},
           {"[abc\\]", "a", Bad},
           {"\\", "x", Bad},
           {"a\\", "a", Bad},
           {"a{}", "a", Bad},
           {"{}", "x", Bad},
           {"a{,3}", "a", Bad},
           {"a{5,3}", "a", Bad},
           {"a{3", "aaa", Bad},
           {"a{3,", "aaa", Bad},
           {"a{", "a{", Bad},
           {"a{x}", "a", Bad},
           {"a{1,2,3}", "a", Bad},
           {"a{ 1}", "a", Bad},
           {"a|[", "a", Bad},
           {"a\xFF", "a", Bad},
           {"\x80", "a", Bad},
           {"\xC3", "a", Bad},
           {"\xE2\x82", "a", Bad},
           {"\xC3"
            "a",
            "a", Bad},
           {"\\\xFF", "a", Bad},
           {"\xF8\x80\x80\x80", "a", Bad}});
    Check({{"\xC0\x80", "\xC0\x80", Yes}, {"\xED\xA0\x80", "\xED\xA0\x80", Yes}});
    EXPECT_EQ(tsm_regex_match(nullptr, "x"), No);
    EXPECT_EQ(tsm_regex_match("[", nullptr), No);
}

TEST(Regex, PatternsHaveAFixedSize) {
    const std::string a = "a";
    Check({{Times(29, a), Times(29, a), Yes},
           {Times(29, a), Times(28, a), No},
           {Times(30, a), Times(30, a), Bad},
           {Times(14, "a*") + a, a, Yes},
           {Times(15, "a*"), a, Bad},
           {Times(9, "a{1}|") + "ab", "ab", Yes},
           {Times(9, "a{1}|") + "abc", "ab", Bad},

           {"[" + Times(38, a) + "]", a, Yes},
           {"[" + Times(39, a) + "]", a, Bad},
           {"[^" + Times(38, a) + "]", "b", Yes},
           {"[^" + Times(39, a) + "]", "b", Bad},
           {"[" + Times(36, a) + "\\]]", "]", Yes},
           {"[" + Times(37, a) + "\\]]", "]", Bad},
           {"[" + Times(18, "é") + "b]c", "bc", Yes},
           {"[" + Times(18, a) + "][" + Times(18, a) + "b]", "ab", Yes},
           {"[" + Times(18, a) + "][" + Times(19, a) + "b]", "ab", Bad},
           {Times(19, "[a]") + "b", Times(19, a) + "b", Yes},
           {Times(20, "[a]"), Times(20, a), Bad}});
    RegexPattern pattern;
    EXPECT_TRUE(pattern.Compile("[" + Times(38, a) + "]"));
    EXPECT_FALSE(pattern.Compile("[" + Times(39, a) + "]"));
    EXPECT_TRUE(pattern.Compile("x[b-d]")) << "the storage is free again";
    EXPECT_TRUE(RegexMatcher(pattern, "xc").Search());
    EXPECT_FALSE(RegexMatcher(pattern, "xa").Search());
}

TEST(Regex, TheSearchEndsWhereTheTextIsNotUtf8) {
    Check({{"a",
            "\xFF"
            "a",
            No},
           {"a", "ba\xFF", No},
           {"b", "ba\xFF", Yes},
           {"", "\xFF", No},
           {"^|x", "\xFF", No},
           {"x|b", "ba\xFF", No},
           {"^x|b", "ba\xFF", Yes},
           {"^x|a", "ba\xFF", No},
           {"ab", "abc\x80", Yes},
           {"abc", "abc\x80", No},
           {"a+", "aa\xC3", No},
           {"a+b", "aab.\xC3", Yes},
           {"^a*", "aa\xC3", Yes},
           {"^a?", "a\xC3", Yes},
           {"^a?$", "a\xC3", No},
           {"^a{1}", "a\xC3", No},
           {"^a{1}", "aa\xC3", Yes},
           {"$", "a\xE2\x82", No},
           {"[^x]", "\xF0\x9F", No},
           {"[a\xFF]", "a", Yes},
           {"[\xFF"
            "a]",
            "a", No},
           {"[^\xFF"
            "a]",
            "a", Yes},
           {"[a\\\xC3]", "b", No}});
}

TEST(Regex, NothingIsReadBehindPatternsAndTexts) {
    const std::string whole = "a[^\\é-ö\\d]{1,2}\\w?é|😀*\\😀+";
    const std::string text = "a-é😀";
    std::size_t malformed = 0;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        // Blocks of exactly this size, so that the address sanitizer sees a byte too many.
        const std::vector<char> patternBlock(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        RegexPattern pattern;
        const bool isPattern = pattern.Compile({patternBlock.data(), patternBlock.size()});
        malformed += isPattern ? 0 : 1;
        for (std::size_t end = 0; end <= text.size(); ++end) {
            const std::vector<char> textBlock(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end));
            const bool occurs = RegexMatcher(pattern, {textBlock.data(), textBlock.size()}).Search().has_value();
            const std::uint32_t expected = !isPattern ? Bad : occurs ? Yes : No;
            EXPECT_EQ(tsm_regex_match(whole.substr(0, length).c_str(), text.substr(0, end).c_str()), expected);
        }
    }
    EXPECT_GT(malformed, 20U);
    EXPECT_LT(malformed, whole.size() - 5);
}

TEST(Regex, StarsTakeMuchAndCountsTakeLittle) {
    const struct {
        std::string_view Pattern;
        std::string_view Text;
        std::size_t Start;
        std::size_t Length;
    } cases[] = {{"a*", "aaa", 0, 3},     {"a*", "baa", 0, 0},   {"a+", "baa", 1, 2},    {"a?", "aaa", 0, 0},
                 {"ba?", "baa", 0, 1},    {"ba?$", "ba", 0, 2},  {"a{1,}", "aaa", 0, 1}, {"a{2,3}", "baaa", 1, 2},
                 {"a{1,}b", "aab", 0, 3}, {".*b", "abab", 0, 4}, {"b|a", "ab", 1, 1},    {"a*a", "aaa", 0, 3},
                 {"é+", "aéé", 1, 4},     {"$", "é", 2, 0},      {"x*$", "éxx", 2, 2}};
    for (const auto& entry : cases) {
        RegexPattern pattern;
        ASSERT_TRUE(pattern.Compile(entry.Pattern));
        const auto occurrence = RegexMatcher(pattern, entry.Text).Search();
        ASSERT_TRUE(occurrence) << entry.Pattern;
        EXPECT_EQ(occurrence->Start, entry.Start) << entry.Pattern;
        EXPECT_EQ(occurrence->Length, entry.Length) << entry.Pattern;
    }
}

// By plain stepping back none of these would end within years.
TEST(Regex, LongTextsCostNoMoreThanTheirLength) {
    const std::string text(100'000, 'a');
    Check({{"a*a*a*a*a*b", text, No},
           {"a*a*a*a*a*b", text + "b", Yes},
           {"a*a*a*a*a*b|c", text + "xb" + text, Yes},
           {"a*a*a*a*a*c", text + "b" + text, No},
           {".*a.*a.*a.*b", text, No},
           {".*b.*a.*b$", Times(25'000, "aba ") + "a", No},
           {"\\w+@\\w+\\.com", text, No},
           {"\\w+-\\w+-\\w+-\\w+@", Times(20'000, "aaaa-"), No},
           {Times(14, "a?") + "b", text, No},
           {"a?a*a+a?[^b]*a+b", text, No},
           {"[^c]*[ac]+.{2,}b{0,3}d", Times(50'000, "ab"), No},
           {".*a+.{2,}.[ac]*d", Times(30'000, "aab"), No},
           {"^a{3}a{0,9}a{0,9}a{0,9}a{0,9}a{0,9}b", text, No},
           {"\\w{2,}@", text.substr(0, 60'000), No},
           {"a{0,}a{0,}a{0,}a{0,}b", text.substr(0, 60'000), No},
           {"a{5,20}a{5,20}b", text, No},
           {"a{40000,}b", text, No},
           {".{30000}.{20000,50000}b", text, No},
           {"[^b]{60000}c?$", text, Yes}});
}

TEST(Regex, NothingIsAllocated) {
    const std::size_t before = allocations;
    EXPECT_EQ(tsm_regex_match("^x|[^a-c\\d]+.*\\w{2,3}$|e?", "abcdefgh"), Yes);
    EXPECT_EQ(tsm_regex_match("[a", "abc"), Bad);
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(Times(1000, "a").size(), 1000U);
    EXPECT_GT(allocations, before) << "the count works";
}

}  // namespace
}  // namespace corvina
