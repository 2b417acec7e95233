#include "base/utf.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

namespace corvina {
namespace {

using namespace std::string_literals;

// U+0000, the last and first code points of each UTF-8 length, and the largest one.
const std::u32string Boundaries = {0x00,   0x41,   0x7F,   0x80,    0x7FF,   0x800,
                                   0xD7FF, 0xE000, 0xFFFF, 0x10000, 0x1F600, 0x10FFFF};

std::wstring Wide(const std::u32string& codePoints) {
    std::wstring text;
    for (const char32_t codePoint : codePoints) {
        if (sizeof(wchar_t) == 2 && codePoint >= 0x10000) {
            text += static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            text += static_cast<wchar_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        } else {
            text += static_cast<wchar_t>(codePoint);
        }
    }
    return text;
}

std::vector<std::byte> Utf16(std::initializer_list<unsigned> units) {
    std::vector<std::byte> bytes;
    for (const unsigned unit : units) {
        bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
    return bytes;
}

const std::vector<std::byte> BoundariesAsUtf16 = Utf16(
    {0x00, 0x41, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFF, 0xD800, 0xDC00, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF});
const std::string BoundariesAsUtf8 =
    "\x00\x41\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF0\x9F\x98\x80"
    "\xF4\x8F\xBF\xBF"s;
const std::string Replacement = "\xEF\xBF\xBD";

TEST(Utf, EveryFormTurnsIntoEveryOther) {
    std::wstring wide = L"before ";
    AppendUtf16(BoundariesAsUtf16, wide);
    EXPECT_EQ(wide, L"before " + Wide(Boundaries));

    EXPECT_EQ(WideFromUtf8(BoundariesAsUtf8), Wide(Boundaries));
    EXPECT_EQ(Utf8FromWide(Wide(Boundaries)), BoundariesAsUtf8);

    std::string utf8 = "before ";
    AppendUtf8FromUtf16(BoundariesAsUtf16, utf8);
    EXPECT_EQ(utf8, "before " + BoundariesAsUtf8);

    std::string bytes;
    AppendUtf16Bytes(Wide(Boundaries), bytes);
    EXPECT_EQ(bytes, std::string(reinterpret_cast<const char*>(BoundariesAsUtf16.data()), BoundariesAsUtf16.size()));
}

TEST(Utf, HalfSurrogatesSurviveInWideTextAndAreReplacedInUtf8) {
    // A low one first, a high one before a letter, a high one before a pair, a high one at the end.
    const std::vector<std::byte> halves = Utf16({0xDC00, 0xD800, 0x41, 0xD801, 0xD83D, 0xDE00, 0xDBFF});
    std::wstring wide;
    AppendUtf16(halves, wide);
    std::string back;
    AppendUtf16Bytes(wide, back);
    EXPECT_EQ(back, std::string(reinterpret_cast<const char*>(halves.data()), halves.size()));

    const std::string expected = Replacement + Replacement + "A" + Replacement + "\xF0\x9F\x98\x80" + Replacement;
    EXPECT_EQ(Utf8FromWide(wide), expected);
    std::string utf8;
    AppendUtf8FromUtf16(halves, utf8);
    EXPECT_EQ(utf8, expected);
}

TEST(Utf, AnOddLastByteIsIgnored) {
    std::vector<std::byte> bytes = Utf16({0x41});
    bytes.push_back(std::byte{0x42});
    std::wstring wide;
    AppendUtf16(bytes, wide);
    EXPECT_EQ(wide, L"A");
    std::string utf8;
    AppendUtf8FromUtf16(bytes, utf8);
    EXPECT_EQ(utf8, "A");
}

TEST(Utf, InvalidUtf8IsReplacedAndWhatFollowsIsKept) {
    const std::wstring one(1, static_cast<wchar_t>(0xFFFD));
    const struct {
        std::string Utf8;
        std::wstring Wide;
    } cases[] = {
        {"\x80z", one + L"z"},                                // a following byte alone
        {"\xC0\xAFz", one + one + L"z"},                      // an overlong slash
        {"\xE0\x80\xAFz", one + one + one + L"z"},            // a longer one
        {"\xED\xA0\x80z", one + one + one + L"z"},            // a surrogate
        {"\xF4\x90\x80\x80z", one + one + one + one + L"z"},  // beyond Unicode
        {"\xFF\xFEz", one + one + L"z"},
        {"\xE2\x82z", one + L"z"},                  // cut short by a letter
        {"\xF0\x9F\x98\xC3\xA4", one + L"\u00E4"},  // cut short by another sequence
        {"z\xF0\x9F\x98", L"z" + one},              // cut short by the end
        {"z\xC3", L"z" + one},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(WideFromUtf8(entry.Utf8), entry.Wide) << testing::PrintToString(entry.Utf8);
    }
}

TEST(Utf, CharactersBeyondUnicodeDoNotLeaveWideText) {
    if (sizeof(wchar_t) == 2) {
        GTEST_SKIP() << "wide characters cannot hold them here";
    }
    const std::wstring beyond = {static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1)};
    EXPECT_EQ(Utf8FromWide(beyond), Replacement + Replacement);
    std::string bytes;
    AppendUtf16Bytes(beyond, bytes);
    EXPECT_EQ(bytes, "\xFD\xFF\xFD\xFF");
}

}  // namespace
}  // namespace corvina
