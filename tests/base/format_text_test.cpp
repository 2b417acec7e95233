#include "base/format_text.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace corvina {
namespace {

TEST(FormatText, FormatsLikeThePlatform) {
    EXPECT_EQ(FormatText(L"%s (%I64u)", {L"Application", std::uint64_t{18'446'744'073'709'551'615U}}),
              L"Application (18446744073709551615)");
    EXPECT_EQ(FormatText(L"%02d.%02d.%04d %02i:%02u", {7, 3, 2024, 5, 59}), L"07.03.2024 05:59");
    EXPECT_EQ(FormatText(L"0x%I64x 0x%08X %x", {0x8000'0000'0000'0000U, 0xC0DE, -1}),
              L"0x8000000000000000 0x0000C0DE ffffffff");
    EXPECT_EQ(
        FormatText(L"%d %I64d %I64i", {std::numeric_limits<int>::min(), std::numeric_limits<std::int64_t>::min(), -1}),
        L"-2147483648 -9223372036854775808 -1");
    EXPECT_EQ(FormatText(L"100%% of %ls", {std::wstring(L"100%d")}), L"100% of 100%d");
    EXPECT_EQ(FormatText(L"", {}), L"");
}

TEST(FormatText, CutsNumbersToTheLengthOfTheConversion) {
    const std::int64_t large = 0x1'0001'FFFF;
    EXPECT_EQ(FormatText(L"%lu %hu %hhu %hd %I32u %llu %u", {large, large, large, large, large, large, -1}),
              L"131071 65535 255 -1 131071 4295098367 4294967295");
}

TEST(FormatText, PadsAndCuts) {
    EXPECT_EQ(FormatText(L"[%5d][%-5d][%05d][%-05d]", {-42, -42, -42, -42}), L"[  -42][-42  ][-0042][-42  ]");
    EXPECT_EQ(FormatText(L"[%4s][%-4s][%.2s][%4.1s]", {L"abc", L"abc", L"abc", L"abc"}), L"[ abc][abc ][ab][   a]");
    EXPECT_EQ(FormatText(L"[%.3d][%5.3d][%.0d][%03d]", {7, 7, 0, 1234}), L"[007][  007][][1234]");
    EXPECT_EQ(FormatText(L"%99999999999999999999d", {1}).size(), 1000U);
    EXPECT_EQ(FormatText(L"%.99999999999999999999d", {1}).size(), 1000U);
}

// Formats come from tables that translators write: whatever is wrong with one, nothing but its arguments is shown.
TEST(FormatText, MissingAndUnfittingArgumentsGiveNothing) {
    EXPECT_EQ(FormatText(L"%s|%s|%d", {L"one"}), L"one||");
    EXPECT_EQ(FormatText(L"%5d|", {}), L"|");
    // An unfitting argument keeps its place, so that the ones behind it still meet their conversions.
    EXPECT_EQ(FormatText(L"%d|%s|%s", {L"text", 5, L"last"}), L"||last");
    EXPECT_EQ(FormatText(L"%s", {L"used", L"left over"}), L"used");
}

TEST(FormatText, InvalidConversionsAreDropped) {
    EXPECT_EQ(FormatText(L"a%yb%d", {1}), L"ab1");
    EXPECT_EQ(FormatText(L"%n%p%f%c%S|%d", {1}), L"|1");
    EXPECT_EQ(FormatText(L"%*d|", {5, 6}), L"d|");
    for (const wchar_t* const cut : {L"x%", L"x%0", L"x%-5", L"x%5.", L"x%.3", L"x%l", L"x%I6", L"x%I64"}) {
        EXPECT_EQ(FormatText(cut, {1, 2}), L"x") << testing::PrintToString(cut);
    }
}

}  // namespace
}  // namespace corvina
