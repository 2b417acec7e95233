#include "query/event_id_list.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>

namespace corvina {
namespace {

struct ListCase {
    std::wstring List;
    std::wstring Included;
    std::wstring Excluded;
};

void ExpectFragments(std::initializer_list<ListCase> cases) {
    for (const ListCase& listCase : cases) {
        const EventIdFragments fragments = ParseEventIdList(listCase.List);
        EXPECT_EQ(fragments.IncludedEventIds, listCase.Included) << testing::PrintToString(listCase.List);
        EXPECT_EQ(fragments.ExcludedEventIds, listCase.Excluded) << testing::PrintToString(listCase.List);
    }
}

TEST(EventIdList, IncludesAndExcludesIdsAndRanges) {
    ExpectFragments({
        {L"1, 3, 5-99, -76, -5-37", L"EventID=1 or EventID=3 or (EventID&gt;=5 and EventID&lt;=99)",
         L"EventID=76 or (EventID&gt;=5 and EventID&lt;=37)"},
        {L"5-9,3", L"(EventID&gt;=5 and EventID&lt;=9) or EventID=3", L""},
        {L"-5", L"", L"EventID=5"},
        {L"-5-37", L"", L"(EventID&gt;=5 and EventID&lt;=37)"},
        {L"-5-37,2,-1-2,-3,9", L"EventID=2 or EventID=9",
         L"(EventID&gt;=5 and EventID&lt;=37) or (EventID&gt;=1 and EventID&lt;=2) or EventID=3"},
        // Neither sorted nor joined, and the same twice.
        {L"9,1,9,10-5", L"EventID=9 or EventID=1 or EventID=9 or (EventID&gt;=10 and EventID&lt;=5)", L""},
    });
}

TEST(EventIdList, BlanksDoNotCountButOtherSpaceDoes) {
    ExpectFragments({
        {L"  7 ,  8", L"EventID=7 or EventID=8", L""},
        {L"1 2 - 1 3, - 4 ", L"(EventID&gt;=12 and EventID&lt;=13)", L"EventID=4"},
        {L"7 , ", L"EventID=7", L""},
        {L"   ", L"", L""},
        {L"1,\t2", L"EventID=1 or EventID=\t2", L""},
        {L"1\r\n,2\u00A0", L"EventID=1\r\n or EventID=2\u00A0", L""},
    });
}

TEST(EventIdList, AnEmptyItemEndsTheList) {
    ExpectFragments({
        {L"", L"", L""},
        {L",", L"", L""},
        {L"7,", L"EventID=7", L""},
        {L"1,,3", L"EventID=1", L""},
        {L"-1, ,3,-3", L"", L"EventID=1"},
        {L",5", L"", L""},
    });
}

TEST(EventIdList, MistakesAreLeftToTheEventLog) {
    ExpectFragments({
        {L"abc, 1a", L"EventID=abc or EventID=1a", L""},
        {L"5-", L"(EventID&gt;=5 and EventID&lt;=)", L""},
        {L"5-10-20", L"(EventID&gt;=5 and EventID&lt;=10-20)", L""},
        {L"-", L"", L"EventID="},
        {L"--5", L"", L"(EventID&gt;= and EventID&lt;=5)"},
        {L"---", L"", L"(EventID&gt;= and EventID&lt;=-)"},
        {L"-1-2-3", L"", L"(EventID&gt;=1 and EventID&lt;=2-3)"},
        {L"1]]</Select>&<", L"EventID=1]]</Select>&<", L""},
    });
}

// No list is too long, and the work grows no faster than the list.
TEST(EventIdList, ReadsListsOfAnyLength) {
    std::wstring list;
    for (int id = 0; id < 200'000; ++id) {
        list += L"7,";
    }
    const EventIdFragments fragments = ParseEventIdList(list);
    EXPECT_EQ(fragments.IncludedEventIds.size(), 9 + 199'999 * std::size_t{13});
}

}  // namespace
}  // namespace corvina
