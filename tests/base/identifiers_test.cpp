#include "base/identifiers.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/parse_number.h"

namespace corvina {
namespace {

std::vector<std::byte> Bytes(std::initializer_list<int> values) {
    std::vector<std::byte> bytes;
    for (const int value : values) {
        bytes.push_back(static_cast<std::byte>(value));
    }
    return bytes;
}

TEST(Guid, TextHasTheFirstThreeFieldsTurnedRound) {
    GuidBytes guid;
    for (std::size_t index = 0; index < guid.size(); ++index) {
        guid[index] = static_cast<std::byte>(0xA0 + index);
    }
    const std::wstring text = L"{A3A2A1A0-A5A4-A7A6-A8A9-AAABACADAEAF}";
    EXPECT_EQ(GuidText(guid), text);
    EXPECT_EQ(ParseGuid(text), guid);
    EXPECT_EQ(ParseGuid(L"a3a2a1a0-A5a4-a7a6-a8a9-aaabacadaeaf"), guid);
}

TEST(Guid, RefusesEverythingElse) {
    for (const wchar_t* const text :
         {L"", L"{}", L"{A3A2A1A0-A5A4-A7A6-A8A9-AAABACADAEAF", L"A3A2A1A0-A5A4-A7A6-A8A9-AAABACADAEAF}",
          L"{A3A2A1A0-A5A4-A7A6-A8A9-AAABACADAEAG}", L"{A3A2A1A0-A5A4-A7A6-A8A9AAAB-ACADAEAF}",
          L"{A3A2A1A0 A5A4-A7A6-A8A9-AAABACADAEAF}", L"{{3A2A1A0-A5A4-A7A6-A8A9-AAABACADAEAF}",
          L"{A3A2A1A0-A5A4-A7A6-A8A9-AAABACADAEAF} "}) {
        EXPECT_FALSE(ParseGuid(text)) << testing::PrintToString(text);
    }
}

TEST(Sid, TextAndBytesTurnIntoOneAnother) {
    const struct {
        std::vector<std::byte> Sid;
        std::wstring Text;
    } cases[] = {
        {Bytes({1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0}), L"S-1-5-18"},
        {Bytes({1, 0, 0, 0, 0, 0, 0, 0}), L"S-1-0"},
        {Bytes({1, 2, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0x80}),
         L"S-1-4294967295-4294967295-2147483648"},
        {Bytes({1, 1, 0x12, 0x34, 0, 0, 0, 0xA, 1, 0, 0, 0}), L"S-1-0x12340000000A-1"},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(SidText(entry.Sid), entry.Text);
        const auto parsed = ParseSid(entry.Text);
        ASSERT_TRUE(parsed) << testing::PrintToString(entry.Text);
        EXPECT_EQ(std::vector<std::byte>(parsed->begin(), parsed->end()), entry.Sid);
    }
}

TEST(Sid, LengthIsOnlyGivenForWholeIdentifiers) {
    std::vector<std::byte> sid = Bytes({1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0, 0xEE, 0xEE});
    EXPECT_EQ(SidLength(sid), 12U);
    EXPECT_EQ(SidText(sid), L"S-1-5-18") << "bytes behind the identifier are not part of it";
    for (std::size_t size = 0; size < 12; ++size) {
        EXPECT_EQ(SidLength(std::span(sid).first(size)), 0U) << size;
        EXPECT_FALSE(SidText(std::span(sid).first(size))) << size;
    }
    sid.resize(200);
    sid[1] = std::byte{15};
    EXPECT_EQ(SidLength(sid), 68U);
    sid[1] = std::byte{16};
    EXPECT_EQ(SidLength(sid), 0U);
    sid[0] = std::byte{2};
    sid[1] = std::byte{1};
    EXPECT_EQ(SidLength(sid), 0U);
}

TEST(Sid, RefusesTextsThatAreNone) {
    for (const wchar_t* const text :
         {L"", L"S", L"S-1", L"S-1-", L"S-2-5-18", L"S-1-5-", L"S-1-5--18", L"S-1-5-4294967296", L"S-1-5-18 ",
          L"S-1-0x1000000000000-1", L"S-1-281474976710656-1", L"S-1-5-1-2-3-4-5-6-7-8-9-10-11-12-13-14-15-16",
          L"S-1-5-18446744073709551634", L"BUILTIN\\Users"}) {
        EXPECT_FALSE(ParseSid(text)) << testing::PrintToString(text);
    }
    EXPECT_TRUE(ParseSid(L"s-1-5-1-2-3-4-5-6-7-8-9-10-11-12-13-14-15"));
}

TEST(ParseUnsigned, TakesWholeNumbersUpToTheHighest) {
    EXPECT_EQ(ParseUnsigned(L"18446744073709551615"), UINT64_MAX);
    EXPECT_EQ(ParseUnsigned(L"0xfFfFfFfFfFfFfFfF"), UINT64_MAX);
    EXPECT_EQ(ParseUnsigned(L"18446744073709551616"), std::nullopt);
    EXPECT_EQ(ParseUnsigned(L"0x10000000000000000"), std::nullopt);
    EXPECT_EQ(ParseUnsigned(L"255", 255), 255U);
    EXPECT_EQ(ParseUnsigned(L"256", 255), std::nullopt);
    EXPECT_EQ(ParseUnsigned(L"9", 5), std::nullopt);
    for (const wchar_t* const text : {L"", L"0x", L"-1", L"+1", L" 1", L"1 ", L"1a", L"0xG", L"1x0"}) {
        EXPECT_EQ(ParseUnsigned(text), std::nullopt) << testing::PrintToString(text);
    }
}

}  // namespace
}  // namespace corvina
