// What the text of a filter compiles to.
#include "embedded/xpath/filter.h"

#include <gtest/gtest.h>

namespace corvina::xpath {
namespace {

TEST(FilterTest, EverythingAndNothingAreKnownBeforehand) {
    for (const wchar_t* text : {L"", L"  ", L"*", L" * "}) {
        const auto filter = Filter::Parse(text, 0);
        ASSERT_NE(filter, nullptr) << text;
        EXPECT_TRUE(filter->MatchesEverything());
        EXPECT_FALSE(filter->MatchesNothing());
    }
    for (const wchar_t* number : {L"-1", L"-2147483648", L"18446744073709551616", L"99999999999999999999999"}) {
        const auto filter = Filter::Parse(L"Event/System[EventRecordID=" + std::wstring(number) + L"]", 0);
        ASSERT_NE(filter, nullptr) << number;
        EXPECT_TRUE(filter->MatchesNothing()) << number;
    }
}

TEST(FilterTest, RecordIdIsRead) {
    EXPECT_EQ(Filter::Parse(L"Event/System[EventRecordID=7]", 0)->RecordId(), 7u);
    EXPECT_EQ(Filter::Parse(L" Event / System [ EventRecordID = 0007 ] ", 0)->RecordId(), 7u);
    EXPECT_EQ(Filter::Parse(L"Event/System[EventRecordID=-0]", 0)->RecordId(), 0u);
    EXPECT_EQ(Filter::Parse(L"Event/System[EventRecordID=18446744073709551615]", 0)->RecordId(), UINT64_MAX);
}

TEST(FilterTest, OtherTextsAreRefused) {
    for (const wchar_t* text :
         {L"**", L"Event/System[EventRecordID=]", L"Event/System[EventRecordID=x]",
          L"Event/System[EventRecordID=1", L"Event/System[EventRecordID=1]]",
          L"Event/System[EventRecordID=1.5]", L"Event/System[EventRecordID=--1]", L"<QueryList/>"}) {
        EXPECT_EQ(Filter::Parse(text, 0), nullptr) << text;
    }
}

}  // namespace
}  // namespace corvina::xpath
