#include "base/text_direction.h"

#include <gtest/gtest.h>
#include <string>

namespace corvina {
namespace {

TEST(TextDirection, TheFirstLetterDecides) {
    EXPECT_EQ(DirectionOf(L"1. The service"), TextDirection::LeftToRight);
    EXPECT_EQ(DirectionOf(L"(\u0421\u043B\u0443\u0436\u0431\u0430)"), TextDirection::LeftToRight);
    EXPECT_EQ(DirectionOf(L"\u65E5\u672C"), TextDirection::LeftToRight);
    EXPECT_EQ(DirectionOf(L"\u0939\u093F"), TextDirection::LeftToRight);
    EXPECT_EQ(DirectionOf(L"12 \u0627\u0644\u062E\u062F\u0645\u0629 Windows"), TextDirection::RightToLeft);
    EXPECT_EQ(DirectionOf(L"\u05D0\u05D1"), TextDirection::RightToLeft);
    EXPECT_EQ(DirectionOf(L"Windows \u0627\u0644"), TextDirection::LeftToRight);
    EXPECT_EQ(DirectionOf(std::wstring(1, static_cast<wchar_t>(0xD83A))), TextDirection::RightToLeft) << "half a pair";
}

TEST(TextDirection, NumbersAndSignsHaveNone) {
    for (const wchar_t* text : {L"", L"22/11/2026 01:16:29", L"{1234-5678}", L"\u0661\u0662", L"\u2022 \xD800"}) {
        EXPECT_EQ(DirectionOf(text), TextDirection::Neutral);
        EXPECT_FALSE(NeedsDirectionMarks(text));
    }
    EXPECT_EQ(DirectionOf(std::wstring(10'000'000, L' ') + L"a"), TextDirection::Neutral) << "not looked for";
}

TEST(TextDirection, MarksAreForTextsWhoseEndsWouldMove) {
    EXPECT_TRUE(NeedsDirectionMarks(L"{54849625-5478-4994-A5BA-3E3B0328C30D}"));
    EXPECT_TRUE(NeedsDirectionMarks(L"11/22/2026 1:16:29 AM"));
    EXPECT_TRUE(NeedsDirectionMarks(L"The service has started."));
    EXPECT_TRUE(NeedsDirectionMarks(L"S-1-5-18"));
    EXPECT_FALSE(NeedsDirectionMarks(L"Service Control Manager"));
    EXPECT_FALSE(NeedsDirectionMarks(L"(\u0627\u0644\u062E\u062F\u0645\u0629)"));
}

}  // namespace
}  // namespace corvina
