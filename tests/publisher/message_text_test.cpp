#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {
namespace {

const std::vector<std::wstring> Values = {L"one", L"255", L"-7", L"0x1F", L"",      L"6",
                                          L"7",   L"8",   L"9",  L"ten",  L"eleven"};

std::wstring Expand(std::wstring_view message) {
    bool missing = true;
    std::wstring text = ExpandMessage(message, Values, missing);
    EXPECT_FALSE(missing);
    return text;
}

std::wstring ExpandWithMissing(std::wstring_view message) {
    bool missing = false;
    std::wstring text = ExpandMessage(message, Values, missing);
    EXPECT_TRUE(missing);
    return text;
}

TEST(ExpandMessage, FillsInValues) {
    EXPECT_EQ(Expand(L"<%1> <%10> <%11x> <%5>"), L"<one> <ten> <elevenx> <>");
    EXPECT_EQ(Expand(L"%1%2%100"), L"one255ten0") << "a number has two digits at most";
    EXPECT_EQ(Expand(L"no values"), L"no values");
    bool missing = true;
    EXPECT_EQ(ExpandMessage(L"%1", std::vector<std::wstring>{L"%2%n%%"}, missing), L"%2%n%%")
        << "values are not messages themselves";
    EXPECT_FALSE(missing);
}

TEST(ExpandMessage, AppliesFormats) {
    EXPECT_EQ(Expand(L"%1!s!|%1!S!|%1!5s!|%1!-5s!|%1!.2s!"), L"one|one|  one|one  |on");
    EXPECT_EQ(Expand(L"%2!d!|%2!x!|%2!08X!|%3!d!|%4!u!|%2!I64x!"), L"255|ff|000000FF|-7|31|ff");
    EXPECT_EQ(Expand(L"%1!d!|%5!x!|%2!*d!|%2!f!|%2!5-d!|%1!abs!"), L"one||255|255|255|one")
        << "what does not fit leaves the value as it is";
    EXPECT_EQ(Expand(L"Hello %1! And %2!"), L"Hello one! And 255!") << "an exclamation mark is not always a format";
    EXPECT_EQ(Expand(L"%1!|%1!!|%1!s"), L"one!|one!!|one!s");
}

TEST(ExpandMessage, ExpandsEscapes) {
    EXPECT_EQ(Expand(L"a%nb%tc%rd%be%%f%.g%!h"), L"a\r\nb\tc\rd e%f.g!h");
    EXPECT_EQ(Expand(L"%%1 %1%!s!"), L"%1 one!s!");
    EXPECT_EQ(Expand(L"the end%0 is not shown %99"), L"the end");
    EXPECT_EQ(Expand(L"100 %"), L"100 %");
}

TEST(ExpandMessage, LeavesPlacesWithoutAValueAsTheyStand) {
    EXPECT_EQ(ExpandWithMissing(L"%1 %12 %99!08x! %2"), L"one %12 %99!08x! 255");
}

TEST(ExpandMessage, ResultsAreBounded) {
    const std::vector<std::wstring> values = {std::wstring(1'000'000, L'v')};
    std::wstring message;
    for (int count = 0; count < 100'000; ++count) {
        message += L"%1";
    }
    bool missing = false;
    EXPECT_EQ(ExpandMessage(message, values, missing).size(), std::size_t{16} << 20);
}

}  // namespace
}  // namespace corvina::publisher
