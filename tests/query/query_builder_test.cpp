// The text of the queries that filters become.
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "query/criterion_fragments.h"
#include "query/query_doubles.h"

namespace corvina::test {
namespace {

constexpr std::uint64_t TicksPerHour = 36'000'000'000;

TEST(CriterionFragments, TimeReachesBackByTheChoicesPlace) {
    const PlainLocale locale;
    const std::vector<std::wstring> fragments = {
        L"",
        L"TimeCreated[timediff(@SystemTime)&lt;=3600000]",
        L"TimeCreated[timediff(@SystemTime)&lt;=43200000]",
        L"TimeCreated[timediff(@SystemTime)&lt;=86400000]",
        L"TimeCreated[timediff(@SystemTime)&lt;=604800000]",  // what the dialogs call the last 30 days
        L"TimeCreated[timediff(@SystemTime)&lt;=2592000000]",
        L"",
    };
    for (std::uint32_t choice = 0; choice < fragments.size(); ++choice) {
        EXPECT_EQ(TimeFragment({.Choice = choice}, locale), fragments[choice]);
    }
    EXPECT_EQ(TimeFragment({.Choice = 0xFFFFFFFF}, locale), L"");
}

TEST(CriterionFragments, CustomTimeIsWrittenInUniversalTime) {
    const auto fragment = [](const LocalMoment& from, const LocalMoment& to, std::uint64_t offset) {
        PlainLocale locale;
        locale.OffsetTicks = offset;
        return TimeFragment({true, 3, from, to}, locale);
    };
    EXPECT_EQ(fragment({2024, 3, 5, 13, 7, 9, 123}, {2024, 12, 31, 23, 59, 59, 999}, 0),
              L"TimeCreated[@SystemTime&gt;='2024-03-05T13:07:09.123Z' and "
              L"@SystemTime&lt;='2024-12-31T23:59:59.999Z']");
    EXPECT_EQ(fragment({2025, 1, 1, 0, 30, 0, 7}, {2024, 3, 1, 1, 59, 0, 0}, 2 * TicksPerHour),
              L"TimeCreated[@SystemTime&gt;='2024-12-31T22:30:00.007Z' and "
              L"@SystemTime&lt;='2024-02-29T23:59:00.000Z']");
    EXPECT_EQ(fragment({2023, 2, 28, 23, 0, 0, 0}, {9999, 6, 1, 0, 0, 0, 0}, 0 - TicksPerHour),
              L"TimeCreated[@SystemTime&gt;='2023-03-01T00:00:00.000Z' and "
              L"@SystemTime&lt;='9999-06-01T01:00:00.000Z']");
    // What cannot be converted is left to the event log.
    EXPECT_EQ(fragment({2023, 2, 29, 25, 0, 61, 1000}, {1601, 1, 1, 0, 30, 0, 0}, TicksPerHour),
              L"TimeCreated[@SystemTime&gt;='2023-02-29T25:00:61.1000Z' and "
              L"@SystemTime&lt;='1601-01-01T00:30:00.000Z']");
}

TEST(CriterionFragments, LevelsAreAlternatives) {
    EXPECT_EQ(LevelFragment({}), L"");
    EXPECT_EQ(LevelFragment({.Information = true}), L"Level=4 or Level=0");
    EXPECT_EQ(LevelFragment({.Error = true, .Warning = true}), L"Level=2 or Level=3");
    EXPECT_EQ(LevelFragment({true, true, true, true, true}),
              L"Level=1 or Level=2 or Level=3 or Level=4 or Level=0 or Level=5");
}

TEST(CriterionFragments, KeywordsAreSoughtByPartsOfTheirNamesAndAddedUp) {
    const std::vector<KeywordRecord> table = {{L"Correlation Hint", 0x40000000000000},
                                              {L"Audit Success", 0x20000000000000},
                                              {L"Audit Failure", 0x10000000000000},
                                              {L"All", 0xFFFFFFFFFFFFFFFF},
                                              {L"\u00C4nderung", 4},
                                              {L"None", 0}};
    const std::vector<std::pair<std::wstring, std::wstring>> cases = {
        {L"Audit Failure", L"band(Keywords,4503599627370496)"},
        {L"audit", L"band(Keywords,9007199254740992)"},  // the first of two
        {L"AUDIT SUCCESS,failure,", L"band(Keywords,13510798882111488)"},
        {L"Hint,Hint", L"band(Keywords,36028797018963968)"},  // the bit above, not the same one
        {L"\u00E4nder,unknown", L"band(Keywords,4)"},
        {L"failure, success", L"band(Keywords,13510798882111488)"},  // the blank is part of the name
        {L"failure,  success", L"band(Keywords,4503599627370496)"},
        {L"failure,,success", L"band(Keywords,4503599627370496)"},
        {L"all", L"band(Keywords,18446744073709551615)"},
        {L"All,ALL", L"band(Keywords,18446744073709551614)"},
        {L"", L""},
        {L",audit", L""},
        {L"unknown,None", L""},
    };
    for (const auto& [names, fragment] : cases) {
        EXPECT_EQ(KeywordFragment(names, table), fragment) << testing::PrintToString(names);
    }
    EXPECT_EQ(KeywordFragment(L"audit", {}), L"");
}

TEST(CriterionFragments, ListsBecomeAlternatives) {
    EXPECT_EQ(ProviderFragment(L"Service Control Manager"), L"Provider[@Name='Service Control Manager']");
    EXPECT_EQ(ProviderFragment(L"A, B,"), L"Provider[@Name='A' or @Name=' B']");
    EXPECT_EQ(ProviderFragment(L"A,,B"), L"Provider[@Name='A']");
    EXPECT_EQ(ProviderFragment(L""), L"");
    EXPECT_EQ(ProviderFragment(L",A"), L"");
    EXPECT_EQ(ProviderFragment(L"O'Hara & <Sons> %s"), L"Provider[@Name='O'Hara & <Sons> %s']");
    EXPECT_EQ(TaskFragment(std::vector<std::uint32_t>{}), L"");
    EXPECT_EQ(TaskFragment(std::vector<std::uint32_t>{12544}), L"Task=12544");
    EXPECT_EQ(TaskFragment(std::vector<std::uint32_t>{1, 0, 4294967295}), L"Task=1 or Task=0 or Task=4294967295");
}

class QueryBuilderTest : public testing::Test, protected QueryBuilding {
  protected:
    QueryBuilderTest() {
        AccountNames.Sids[L"NT AUTHORITY\\SYSTEM"] = L"S-1-5-18";
        Reachability.Reachable = {L"server"};
        Keywords.Records = {{L"Audit Failure", 0x10000000000000}};
    }

    static FilterCriteria AllCriteria() {
        FilterCriteria criteria;
        criteria.Time.Choice = 3;
        criteria.Levels = {.Error = true, .Warning = true};
        criteria.EventIds = L"1, 3, 5-99, -76, -5-37";
        criteria.Keywords = L"audit";
        criteria.Providers = L"A,B";
        criteria.User = L"NT AUTHORITY\\SYSTEM";
        criteria.Computer = L"server";
        criteria.Channels = L"Application,Contoso-App/Operational";
        criteria.Tasks = {7, 8};
        return criteria;
    }

    std::wstring FromDialog(const FilterCriteria& criteria, EmptyChannels empty = EmptyChannels::Refused) {
        return Builder.BuildQueryFromDialog(CriteriaDialog(criteria), Current, empty);
    }

    void ExpectOneBox(std::wstring_view text) {
        ASSERT_EQ(Boxes.Informations.size(), 1U);
        EXPECT_EQ(Boxes.Informations[0].Text, text);
        EXPECT_EQ(Boxes.Informations[0].Title, L"Information");
        EXPECT_TRUE(Boxes.Errors.empty());
        Boxes.Informations.clear();
    }
};

const std::wstring TimeLevelsAndIds =
    L"(TimeCreated[timediff(@SystemTime)&lt;=86400000]) and (Level=2 or Level=3) and "
    L"(EventID=1 or EventID=3 or (EventID&gt;=5 and EventID&lt;=99)) and ";
const std::wstring KeywordPart = L"(band(Keywords,4503599627370496))";
const std::wstring ProviderPart = L"(Provider[@Name='A' or @Name='B'])";
const std::wstring UserAndComputer = L" and (Security[@UserID='S-1-5-18']) and (Computer='server')";

// The document of both channels of AllCriteria.
std::wstring DocumentOf(const std::wstring& condition) {
    const std::wstring exclusion = L"EventID=76 or (EventID&gt;=5 and EventID&lt;=37)";
    std::wstring document = L"<QueryList>  <Query Id=\"0\" Path=\"Application\">";
    for (const std::wstring channel : {L"Application", L"Contoso-App/Operational"}) {
        document += L"  <Select Path=\"" + channel + L"\">*[System[" + condition + L"]]</Select>";
        document += L"  <Suppress Path=\"" + channel + L"\">*[System[" + exclusion + L"]]</Suppress>";
    }
    return document + L"  </Query></QueryList>";
}

TEST_F(QueryBuilderTest, JoinsTheCriteriaInTheOrderOfTheVariant) {
    const FilterCriteria criteria = AllCriteria();
    EXPECT_EQ(FromDialog(criteria),
              DocumentOf(TimeLevelsAndIds + KeywordPart + L" and " + ProviderPart + UserAndComputer));
    EXPECT_EQ(Builder.BuildQueryFromCriteria(criteria),
              DocumentOf(TimeLevelsAndIds + ProviderPart + L" and " + KeywordPart + UserAndComputer));
    const int lookUps = AccountNames.LookUps;
    EXPECT_EQ(Builder.BuildQueryFromCriteriaWithTasks(criteria),
              DocumentOf(TimeLevelsAndIds + ProviderPart + L" and (Task=7 or Task=8)"));
    // Neither users nor computers are asked for in vain.
    EXPECT_EQ(AccountNames.LookUps, lookUps);
    EXPECT_EQ(Reachability.Asked.size(), 2U);
    EXPECT_EQ(Keywords.AskedChannels, std::vector<std::wstring>(2, criteria.Channels));
    EXPECT_TRUE(Boxes.Informations.empty());
}

TEST_F(QueryBuilderTest, EachCriterionStandsAlone) {
    const std::vector<std::pair<FilterCriteria, std::wstring>> cases = {
        {{.Time = {.Choice = 4}}, L"TimeCreated[timediff(@SystemTime)&lt;=604800000]"},
        {{.Levels = {.Error = true}}, L"Level=2"},
        {{.EventIds = L"7"}, L"EventID=7"},
        {{.Keywords = L"audit"}, L"band(Keywords,4503599627370496)"},
        {{.Providers = L"A"}, L"Provider[@Name='A']"},
        {{.User = L"NT AUTHORITY\\SYSTEM"}, L"Security[@UserID='S-1-5-18']"},
        {{.Computer = L"server"}, L"Computer='server'"},
    };
    for (const auto& [criterion, fragment] : cases) {
        FilterCriteria criteria = criterion;
        criteria.Channels = L"Application,System";
        const std::wstring document =
            L"<QueryList>  <Query Id=\"0\" Path=\"Application\">  <Select Path=\"Application\">*[System[(" + fragment +
            L")]]</Select>  <Select Path=\"System\">*[System[(" + fragment + L")]]</Select>  </Query></QueryList>";
        EXPECT_EQ(FromDialog(criteria), document);
        EXPECT_EQ(Builder.BuildQueryFromCriteria(criteria), document);
    }
    EXPECT_EQ(Builder.BuildQueryFromCriteriaWithTasks({.Channels = L"System", .Tasks = {7}}),
              L"<QueryList>  <Query Id=\"0\" Path=\"System\">  <Select Path=\"System\">*[System[(Task=7)]]</Select>"
              L"  </Query></QueryList>");
}

TEST_F(QueryBuilderTest, WithoutConditionAllEventsAreSelected) {
    EXPECT_EQ(FromDialog({.Channels = L"A,B,"}),
              L"<QueryList>  <Query Id=\"0\" Path=\"A\">  <Select Path=\"A\">*</Select>"
              L"  <Select Path=\"B\">*</Select>  </Query></QueryList>");
    EXPECT_EQ(Builder.BuildQueryFromCriteria({.EventIds = L"-5", .Channels = L"A"}),
              L"<QueryList>  <Query Id=\"0\" Path=\"A\">  <Select Path=\"A\">*</Select>"
              L"  <Suppress Path=\"A\">*[System[EventID=5]]</Suppress>  </Query></QueryList>");
    // An empty item ends the channels. What was typed is copied, blanks and markup included.
    EXPECT_EQ(Builder.BuildQueryFromCriteriaWithTasks({.Channels = L"A, B&,,C"}),
              L"<QueryList>  <Query Id=\"0\" Path=\"A\">  <Select Path=\"A\">*</Select>"
              L"  <Select Path=\" B&\">*</Select>  </Query></QueryList>");
    EXPECT_EQ(FromDialog({.Channels = L",A"}), L"<QueryList>  <Query Id=\"0\" Path=\"\">  </Query></QueryList>");
}

TEST_F(QueryBuilderTest, ExclusionsAreThoseOfTheirOwnList) {
    FromDialog({.EventIds = L"-5", .Channels = L"A"});
    EXPECT_EQ(FromDialog({.Channels = L"A"}).find(L"Suppress"), std::wstring::npos);
}

TEST_F(QueryBuilderTest, WithoutChannelsThereIsNoQuery) {
    EXPECT_EQ(FromDialog({.User = L"stranger"}), L"");
    ExpectOneBox(L"No Channel selected");
    EXPECT_EQ(Builder.BuildQueryFromCriteria({.Computer = L"nowhere"}), L"");
    ExpectOneBox(L"No Channel selected");
    EXPECT_EQ(Builder.BuildQueryFromCriteriaWithTasks({}), L"");
    ExpectOneBox(L"No Channel selected");

    const std::wstring nothing = L"<QueryList>  <Query Id=\"0\" Path=\"\">  </Query></QueryList>";
    EXPECT_EQ(FromDialog({.Levels = {.Error = true}}, EmptyChannels::Allowed), nothing);
    EXPECT_EQ(Builder.BuildQueryForChannels(CriteriaDialog({.Channels = L"Box"}), {}), nothing);
    EXPECT_TRUE(Boxes.Informations.empty());
}

TEST_F(QueryBuilderTest, ChannelsOfTheBoxReplaceThoseOfTheCurrentFilter) {
    Current.Channels = L"Tree";
    const std::wstring head = L"<QueryList>  <Query Id=\"0\" Path=\"";
    EXPECT_EQ(Builder.BuildQueryForChannels(CriteriaDialog({.Channels = L"Box"}), Current).find(head + L"Tree\">"), 0U);
    EXPECT_EQ(FromDialog({.Channels = L"Box,More"}).find(head + L"Box\">"), 0U);
    EXPECT_EQ(Current.Channels, L"Box,More");
    FromDialog({});
    EXPECT_EQ(Current.Channels, L"");
}

TEST_F(QueryBuilderTest, UnknownUsersAndUnreachableComputersAreToldAndLeftOut) {
    const FilterCriteria criteria{
        .Levels = {.Error = true}, .User = L"stranger", .Computer = L"nowhere", .Channels = L"A"};
    const std::wstring document =
        L"<QueryList>  <Query Id=\"0\" Path=\"A\">  <Select Path=\"A\">*[System[(Level=2)]]</Select>"
        L"  </Query></QueryList>";
    EXPECT_EQ(FromDialog(criteria), document);
    ASSERT_EQ(Boxes.Informations.size(), 2U);
    EXPECT_EQ(Boxes.Informations[0].Text, L"stranger - Unknown User!");
    EXPECT_EQ(Boxes.Informations[1].Text, L"Computer not connected!");
    EXPECT_EQ(Boxes.Informations[1].Title, L"Information");
    Boxes.Informations.clear();

    EXPECT_EQ(Builder.BuildQueryFromCriteria(criteria), document);
    ASSERT_EQ(Boxes.Informations.size(), 2U);
    EXPECT_EQ(Boxes.Informations[0].Text, L"stranger - Unknown User!");
    EXPECT_EQ(Boxes.Informations[1].Text, L"nowhere- Computer not connected!");
}

// The conditions stand once in the file of a stored filter, but with each of its channels in the query.
TEST_F(QueryBuilderTest, HugeFiltersDoNotMakeQueriesWithoutBounds) {
    FilterCriteria criteria;
    for (int count = 0; count < 100'000; ++count) {
        criteria.Channels += L"A,";
        criteria.EventIds += L"7,";
    }
    const std::wstring document = Builder.BuildQueryFromCriteria(criteria);
    EXPECT_LT(document.size(), std::size_t{20} << 20);
    EXPECT_FALSE(document.ends_with(L"</QueryList>"));
}

TEST_F(QueryBuilderTest, BoxesAreReadToACertainLength) {
    const auto filled = [](std::wstring_view start, std::size_t length) {
        return std::wstring(start) + std::wstring(length - start.size(), L'7');
    };
    const std::wstring kept = filled(L"-1,", 2599);
    EXPECT_EQ(ParseEventIdListFromDialog(CriteriaDialog({.EventIds = kept})), ParseEventIdList(kept));
    EXPECT_EQ(ParseEventIdListFromDialog(CriteriaDialog({.EventIds = kept + L",-5"})), ParseEventIdList(kept));

    FilterCriteria criteria{.Providers = filled(L"P", 2600), .Channels = filled(L"A,", 2600)};
    EXPECT_EQ(FromDialog(criteria).find(criteria.Providers), std::wstring::npos);
    EXPECT_EQ(Current.Channels, filled(L"A,", 2599));
    // A stored filter has no box.
    EXPECT_NE(Builder.BuildQueryFromCriteria(criteria).find(criteria.Providers), std::wstring::npos);
}

}  // namespace
}  // namespace corvina::test
