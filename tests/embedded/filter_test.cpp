// What the texts of filters say: which are filters, what they know beforehand, and which events they let through.
#include "embedded/xpath/filter.h"

#include <gtest/gtest.h>

#include "base/identifiers.h"
#include "embedded/filter_log.h"
#include "embedded/forwarded_log.h"
#include "support/event_log_fixture.h"

namespace corvina::xpath {
namespace {

using evtx::WriterEvent;
using evtx::WriterValue;
using Kind = evtx::WriterValue::Kind;
using Indices = std::vector<std::size_t>;

std::string Shown(std::wstring_view text) {
    return std::string(text.begin(), text.begin() + std::min<std::ptrdiff_t>(std::ssize(text), 200));
}

WriterValue Number(std::wstring name, Kind kind, std::uint64_t number) {
    return {std::move(name), kind, {}, number, {}};
}

WriterValue Bytes(std::wstring name, Kind kind, std::span<const std::byte> bytes) {
    return {std::move(name), kind, {}, 0, {bytes.begin(), bytes.end()}};
}

// Event 0 has a little of everything, event 1 is classic, event 2 has hardly anything.
std::vector<WriterEvent> VariedEvents() {
    const auto sid = ParseSid(L"S-1-5-21-1-2-3-1001").value();
    const GuidBytes guid = ParseGuid(L"{00112233-4455-6677-8899-AABBCCDDEEFF}").value();
    test::TestEvent plain;
    plain.Id = 4624;
    plain.Level = 0;
    plain.Provider = L"Vendor-Security";
    plain.Time = test::FirstTestTime + 1'234'567;  // 2024-03-05T13:07:09.1234567Z
    plain.Keywords = 0x8020000000000000;
    plain.User = L"S-1-5-18";
    plain.Task = 12544;
    WriterEvent varied = test::MakeWriterEvent(plain, 0);
    varied.System.ProviderGuid = guid;
    varied.System.ActivityId = guid;
    varied.Data = {
        {L"User", Kind::Text, L"O'Neill", 0, {}},
        Number(L"Small", Kind::UInt32, 16),
        Number(L"Large", Kind::UInt64, UINT64_MAX),
        Number(L"Negative", Kind::Int32, static_cast<std::uint64_t>(-5)),
        Number(L"Hex", Kind::HexInt64, 0x8000000000000001),
        Number(L"Yes", Kind::Boolean, 1),
        Number(L"When", Kind::FileTime, test::FirstTestTime),
        Bytes(L"Who", Kind::Sid, sid),
        Bytes(L"What", Kind::Guid, guid),
        {L"TextNumber", Kind::Text, L"0x10", 0, {}},
        {L"TextTime", Kind::Text, L"2024-03-05T13:07:09.5Z", 0, {}},
    };
    plain = {};
    plain.Id = 7036;
    plain.Level = 4;
    plain.Provider = L"Service Control Manager";
    plain.Time = test::FirstTestTime - 36'000'000'000;  // an hour before
    plain.Qualifiers = 16384;
    plain.Data = {{L"", L"Spooler"}, {L"", L"running"}};
    plain.Keywords = 0x80000000000000;
    const WriterEvent classic = test::MakeWriterEvent(plain, 1);
    WriterEvent bare;
    bare.System.EventId = 1;
    bare.System.TimeCreated = 0;
    return {varied, classic, bare};
}

struct FilterCase {
    std::wstring Text;
    Indices Expected;
};

void ExpectResults(const std::vector<FilterCase>& cases) {
    const test::FilterLog log(VariedEvents());
    for (const auto& [text, expected] : cases) {
        const auto matching = log.Matching(text);
        ASSERT_TRUE(matching.has_value()) << Shown(text);
        EXPECT_EQ(*matching, expected) << Shown(text);
    }
}

TEST(FilterTest, EverythingAndNothingAreKnownBeforehand) {
    for (const wchar_t* text : {L"", L"  ", L"*", L" * ", L"(*)", L"child::*"}) {
        const auto filter = Filter::Parse(text, 0);
        ASSERT_NE(filter, nullptr) << text;
        EXPECT_TRUE(filter->MatchesEverything());
        EXPECT_FALSE(filter->MatchesNothing());
    }
    for (const wchar_t* text :
         {L"Event/System[EventRecordID=-1]", L"Event/System[EventRecordID=-2147483648]",
          L"*[System[EventRecordID=18446744073709551616]]", L"*[System[EventRecordID=99999999999999999999999]]",
          L"*[System[(EventID>=10 and EventID<=5)]]", L"*[System[Level=1] and System[Level=2]]",
          L"*[System[EventID='abc' or TimeCreated[@SystemTime='today']]]"}) {
        const auto filter = Filter::Parse(text, 0);
        ASSERT_NE(filter, nullptr) << text;
        EXPECT_TRUE(filter->MatchesNothing()) << text;
    }
    EXPECT_FALSE(Filter::Parse(L"*[System[EventID='abc' or Foo]]", 0)->MatchesNothing());
}

TEST(FilterTest, RecordIdIsRead) {
    const auto recordId = [](std::wstring_view text) { return Filter::Parse(text, 0)->RecordId(); };
    EXPECT_EQ(recordId(L"Event/System[EventRecordID=7]"), 7U);
    EXPECT_EQ(recordId(L" Event / System [ EventRecordID = 0007 ] "), 7U);
    EXPECT_EQ(recordId(L"Event/System[EventRecordID=-0]"), 0U);
    EXPECT_EQ(recordId(L"Event/System[EventRecordID=0xFFFFFFFFFFFFFFFF]"), UINT64_MAX);
    EXPECT_EQ(recordId(L"*[System[Level=2 and (EventRecordID>=7 and 8>EventRecordID)] and EventData]"), 7U);
    EXPECT_EQ(recordId(L"*[System[EventRecordID=7]] and *[EventData[Data='x']]"), 7U);
    for (const wchar_t* text :
         {L"*", L"*[System[EventRecordID>=7]]", L"*[System[EventRecordID=7 or EventRecordID=8]]",
          L"*[System[EventRecordID=7 or Level=2]]", L"*[EventData[EventRecordID=7]]", L"*[System[EventID=7]]"}) {
        EXPECT_EQ(recordId(text), std::nullopt) << text;
    }
}

TEST(FilterTest, OtherTextsAreRefused) {
    for (const wchar_t* text :
         {// Not in the language
          L"*[System[contains(Computer,'x')]]", L"*[System[starts-with(Computer,'x')]]", L"*[not(System)]", L"//System",
          L"*//System", L"/Event", L"*[System/..]", L"*[System[.='x']]", L"*[System[EventID=1+1]]",
          L"*[System[EventID=7-1]]", L"*[System[EventID*2=4]]", L"*[System[last()=1]]", L"*[System[count(*)=1]]",
          L"*[System[EventID=Level]]", L"*[System[1=1]]", L"*[System[1]]", L"*['x']", L"*|*", L"ns:Event", L"parent::*",
          L"*[System[EventID eq 1]]", L"*[System[EventID==1]]", L"*[System[EventID=1 AND Level=2]]",
          // Conditions that are no path
          L"EventID=1", L"*=1", L"(Event='x')", L"1=1", L"'x'", L"7", L"position()=1", L"band(*,1)",
          L"*[System[timediff(TimeCreated)]]", L"*[position()]", L"*[System] and *[System]='x'",
          // Broken
          L"**", L"*[", L"*[]", L"*]", L"*[System", L"*[System]]", L"*[(System]", L"*[System)]", L"()", L"*[()]",
          L"* *", L"*[System[Level=]]", L"*[System[=2]]", L"*[System[Level=2 or]]", L"*[System[or Level=2]]",
          L"*[System[Level=2 Level=3]]", L"*[System[Computer='x]]", L"*[System[Computer=\"x']]",
          L"*[System[Computer='O''Neill']]", L"*/", L"*[@]", L"*[System[EventID=1or EventID=2]]",
          L"*[System[EventID=--1]]", L"*[System[EventID=1.5]]", L"*[System[EventID=0x]]", L"*[System[EventID=0xG]]",
          L"*[System[EventID=5x]]", L"Event and", L"*[System[band(Keywords)]]", L"*[System[band(Keywords,)]]",
          L"*[System[band(1,2)]]", L"*[System[band(Keywords,'x')]]", L"*[System[band(Keywords,18446744073709551616)]]",
          L"*[System[band(Keywords,1,2)]]", L"*[System[timediff()<=1]]", L"*[System[timediff(1,2)<=1]]",
          L"*[System[TimeCreated[timediff(@SystemTime,'x')<=1]]]", L"*[System[position(1)=1]]", L"*[text(1)]",
          L"<QueryList/>", L"*[System[(EventID>=5 and EventID<=)]]", L"*[System[EventID=abc]]",
          L"*[System[(EventID>=5 and EventID<=10-20)]]", L"*[System[EventID=]]"}) {
        EXPECT_EQ(Filter::Parse(text, 0), nullptr) << Shown(text);
    }
    EXPECT_EQ(Filter::Parse(std::wstring_view(L"*\0", 2), 0), nullptr);
}

TEST(FilterTest, LargeFiltersAreBounded) {
    const auto isFilter = [](const std::wstring& text) { return Filter::Parse(text, 0) != nullptr; };
    const auto nested = [](const wchar_t* open, const wchar_t* close, std::size_t depth) {
        std::wstring text = L"*";
        for (std::size_t level = 0; level < depth; ++level) {
            text = open + text + close;
        }
        return text;
    };
    EXPECT_TRUE(isFilter(nested(L"(", L")", 64)) && isFilter(nested(L"*[", L"]", 64)));
    EXPECT_FALSE(isFilter(nested(L"(", L")", 65)) || isFilter(nested(L"*[", L"]", 65)));
    EXPECT_FALSE(isFilter(nested(L"(", L")", 30'000)) || isFilter(std::wstring(60'000, L'(')));
    EXPECT_TRUE(isFilter(L"*" + std::wstring(65'535, L' ')));
    EXPECT_FALSE(isFilter(L"*" + std::wstring(65'536, L' ')));
    std::wstring names = L"a";
    for (int step = 0; step < 10'000; ++step) {
        names += L"/a";
    }
    EXPECT_TRUE(isFilter(names));
    EXPECT_FALSE(isFilter(names + names.substr(1)));
    std::wstring predicates = L"*";
    for (int predicate = 0; predicate < 16; ++predicate) {
        predicates += L"[*]";
    }
    EXPECT_TRUE(isFilter(predicates));
    EXPECT_FALSE(isFilter(predicates + L"[*]"));
}

TEST(FilterTest, LongListsOfEventIds) {
    std::wstring list = L"EventID=1";
    for (int id = 3; id < 3000; id += 2) {
        list += L" or EventID=" + std::to_wstring(id);
    }
    ExpectResults({{L"*[System[" + list + L"]]", {2}},
                   {L"*[System[(" + list + L" or EventID=7036) and (EventID>=5)]]", {1}},
                   {L"*[EventData or System[" + list + L"]]", {0, 1, 2}}});
}

// The conditions that the program's own dialogs put together.
TEST(FilterTest, ConditionsOfTheFilterDialog) {
    ExpectResults({
        {L"*[System[(Level=4 or Level=0)]]", {0, 1}},
        {L"*[System[(Level=1 or Level=2 or Level=3)]]", {}},
        {L"*[System[(EventID=1 or EventID=3 or (EventID>=5 and EventID<=5000))]]", {0, 2}},
        {L"*[System[EventID=7036 or (EventID>=1 and EventID<=37)]]", {1, 2}},
        {L"*[System[(EventID>=10 and EventID<=5)]]", {}},
        {L"*[System[(band(Keywords,9007199254740992))]]", {0}},
        {L"*[System[(band(Keywords,45035996273704960))]]", {0, 1}},
        {L"*[System[(Provider[@Name='Vendor-Security' or @Name='Other'])]]", {0}},
        {L"*[System[(Security[@UserID='S-1-5-18'])]]", {0}},
        {L"*[System[(Computer='TESTPC')]]", {0, 1}},
        {L"*[System[(Task=12544 or Task=1)]]", {0}},
        {L"*[System[(TimeCreated[timediff(@SystemTime)<=3600000])]]", {0}},
        {L"*[System[(TimeCreated[timediff(@SystemTime)<=43200000])]]", {0, 1}},
        {L"*[System[(TimeCreated[@SystemTime>='2024-03-05T12:00:00.000Z' and "
         L"@SystemTime<='2024-03-05T12:59:59.999Z'])]]",
         {1}},
        {L"*[System[(TimeCreated[timediff(@SystemTime)<=604800000]) and (Level=4 or Level=0) and (EventID=4624) and "
         L"(band(Keywords,9007199254740992)) and (Provider[@Name='Vendor-Security']) and "
         L"(Security[@UserID='S-1-5-18']) and (Computer='TESTPC')]]",
         {0}},
        {L"Event/System[EventRecordID=2]", {1}},
    });
}

TEST(FilterTest, PathsSelectElementsAttributesAndTexts) {
    ExpectResults({
        {L"Event", {0, 1, 2}},
        {L"event", {}},
        {L"Event/System", {0, 1, 2}},
        {L"child::Event/child::System[attribute::x]", {}},
        {L"Event[System/Level=4]", {1}},
        {L"*[*[Level=4]]", {1}},
        {L"*/*/Level[text()=4]", {1}},
        {L"*[EventData/Data]", {0, 1}},
        {L"*[EventData[Data[@Name=\"User\"]=\"O'Neill\"]]", {0}},
        {L"*[EventData[Data[@Name='User' and text()=\"O'Neill\"]]]", {0}},
        {L"*[EventData[Data[@*='User']]]", {0}},
        {L"*[EventData[Data/@Name='User']]", {0}},
        {L"*[EventData/Data='running']", {1}},
        {L"*[EventData[Data='Spooler' and Data='running']]", {1}},
        {L"*[EventData[Data[position()=1]='running']]", {}},
        {L"*[EventData[Data[position()=2]='running']]", {1}},
        {L"*[EventData[Data[text()='running'][position()=1]]]", {1}},
        {L"*[EventData[*[position()>=12]]]", {}},
        {L"*[EventData='Spoolerrunning']", {1}},
        {L"*[System[EventID[@Qualifiers=16384]=7036]]", {1}},
        {L"*[System/EventID/@Qualifiers=0x4000]", {1}},
        {L"*[@xmlns]", {}},
        {L"*[System[Provider[@Guid]]]", {0}},
        {L"*[System/Correlation[@ActivityID='{00112233-4455-6677-8899-aabbccddeeff}']]", {0}},
        {L"*[System/Correlation[@ActivityID='00112233-4455-6677-8899-AABBCCDDEEFF']]", {0}},
        {L"*[UserData]", {}},
        {L"*[System[EventID=4624]] and *[EventData[Data[@Name='Small']=16]]", {0}},
        {L"(*[System[EventID=4624]] or *[EventData[Data='Spooler']])", {0, 1}},
        {L"*[System[EventID=1] or EventData[Data='Spooler']]", {1, 2}},
        {L"*[2=System/Level or 4=System/Level]", {1}},
        {L"*[5000<=System/EventID]", {1}},
    });
}

TEST(FilterTest, ValuesAreComparedByTheirKind) {
    const auto data = [](const std::wstring& name, const std::wstring& condition) {
        return L"*[EventData[Data[@Name='" + name + L"']" + condition + L"]]";
    };
    std::vector<FilterCase> cases;
    const auto holds = [&](const std::wstring& name, std::initializer_list<const wchar_t*> conditions) {
        for (const wchar_t* condition : conditions) {
            cases.push_back({data(name, condition), {0}});
        }
    };
    const auto holdsNot = [&](const std::wstring& name, std::initializer_list<const wchar_t*> conditions) {
        for (const wchar_t* condition : conditions) {
            cases.push_back({data(name, condition), {}});
        }
    };
    holds(L"Small", {L"=16", L"='16'", L"=0x10", L"='0x10'", L"!=17", L">-1", L"<18446744073709551616", L">=16"});
    holdsNot(L"Small", {L"!=16", L"='sixteen'", L"!='sixteen'", L"<'sixteen'", L"=''", L">16", L"=' 16'", L"=-16"});
    holds(L"Large", {L"=18446744073709551615", L"=0xFFFFFFFFFFFFFFFF", L">18446744073709551614", L"!=-1",
                     L"<99999999999999999999", L">-99999999999999999999"});
    holdsNot(L"Large", {L"=-1", L"=18446744073709551614", L"=18446744073709551616", L"<0", L"=9223372036854775807"});
    holds(L"Negative", {L"=-5", L"='-5'", L"=-0x5", L"<0", L"<-4", L">-6", L"<0xFFFFFFFFFFFFFFFF"});
    holdsNot(L"Negative", {L"=5", L"=4294967291", L">0"});
    holds(L"Hex", {L"=0x8000000000000001", L"=9223372036854775809", L">9223372036854775808"});
    holdsNot(L"Hex", {L"=9223372036854775808", L"<0"});
    holds(L"Yes", {L"='true'", L"=1", L"!='false'", L">0"});
    holdsNot(L"Yes", {L"='false'", L"=0", L"='True'", L"=2", L"!=2"});
    holds(L"When", {L"='2024-03-05T13:07:09Z'", L"='2024-03-05T13:07:09.0000000Z'", L"<'2024-03-05T13:07:09.0000001Z'",
                    L">='2024-03-05T13:07:09.000000000Z'", L">'2024-03-05T13:07:08.999999999Z'"});
    holdsNot(L"When", {L"='2024-03-05'", L"!='2024-03-05'", L"=133541176290000000", L"!='2024-03-05T13:07:09.00Z'"});
    holds(L"Who", {L"='S-1-5-21-1-2-3-1001'", L"='s-1-5-21-1-2-3-1001'", L"!='S-1-5-18'"});
    holdsNot(L"Who", {L"='S-1-5-18'", L"!='somebody'", L"<'S-1-5-22'"});
    holds(L"What", {L"='{00112233-4455-6677-8899-aabbccddeeff}'", L"!='{00000000-0000-0000-0000-000000000000}'"});
    holdsNot(L"What", {L"='00112233'", L"!='00112233'"});
    holds(L"TextNumber", {L"='0x10'", L"=16", L"!='16'", L">=16", L"<'17'"});
    holdsNot(L"TextNumber", {L"='0X10'", L"=17", L"!=16", L"<'abc'"});
    holds(L"TextTime", {L"<'2024-03-05T13:07:10Z'", L"!='2024-03-05T13:07:09.50Z'", L">='2024-03-05T13:07:09.500Z'"});
    holds(L"User", {L"!='somebody'"});
    holdsNot(L"User", {L"<'z'", L">'A'", L"!=5", L"=5"});
    ExpectResults(cases);
}

TEST(FilterTest, SystemValuesAreComparedByTheirKind) {
    ExpectResults({
        {L"*[System[Keywords=0x8020000000000000]]", {0}},
        {L"*[System[Keywords=9232379236109516800]]", {0}},
        {L"*[System[Keywords<0]]", {}},
        {L"*[System[Provider[@Name!='Vendor-Security']]]", {1}},
        {L"*[System[Provider/@Name='vendor-security']]", {}},
        {L"*[System[TimeCreated/@SystemTime='2024-03-05T13:07:09.1234567Z']]", {0}},
        {L"*[System[TimeCreated/@SystemTime='2024-03-05T13:07:09.123456700Z']]", {0}},
        {L"*[System[TimeCreated/@SystemTime>'2024-03-05T13:07:09.1234566Z']]", {0}},
        {L"*[System[TimeCreated/@SystemTime>'2024-03-05T13:07:09.12345670Z']]", {}},
        {L"*[System[TimeCreated/@SystemTime<='1601-01-01T00:00:00Z']]", {2}},
        {L"*[System[Security[@UserID!='S-1-5-19']]]", {0}},
        {L"*[System[EventID!=1]]", {0, 1}},
        {L"*[System[EventID!='abc']]", {}},
        {L"*[System[Execution[@ProcessID=100 and @ThreadID='0xC8']]]", {0, 1}},
        {L"*[System[Computer='']]", {}},
        {L"*[System[band(Keywords,-1)=9232379236109516800]]", {0}},
        {L"*[System[Band(0x20000000000000,Keywords)!=0]]", {0}},
        {L"*[System[BAND(Keywords,0)=0]]", {0, 1}},
        {L"*[System[band(Keywords,0)]]", {}},
        {L"*[System[band(Provider/@Name,1)=0]]", {}},
        {L"*[System[band(EventID,Task)=4096]]", {0}},
        {L"*[System[TimeCreated[timediff(@SystemTime)>3170876]]]", {1, 2}},
        {L"*[System[TimeCreated[timediff(@SystemTime)=3170876]]]", {0}},
        {L"*[System[TimeCreated[timediff(@SystemTime,'2024-03-05T13:07:10.1234567Z')=1000]]]", {0}},
        {L"*[System[TimeCreated[timediff('2024-03-05T13:07:10.1234567Z',@SystemTime)=-1000]]]", {0}},
        {L"*[System[TimeCreated[timediff(@SystemTime,0)=0]]]", {2}},
        {L"*[System[TimeCreated[TimeDiff(@SystemTime)<=-1]]]", {}},
    });
}

TEST(FilterTest, DataAndTextsOfForwardedEventsAreAsked) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(test::WriteForwardedLog(folder.Path() / "log.evtx"));
    std::uint32_t error = 0;
    const auto file = evtx::LogFile::Open(folder.Path() / "log.evtx", error);
    ASSERT_NE(file, nullptr);
    const auto chunk = file->ReadChunk(0);
    const auto matches = [&](const wchar_t* text) {
        return test::Matches(*Filter::Parse(text, test::FilterTestNow), *chunk, chunk->Records().front());
    };
    EXPECT_TRUE(matches(L"*[System[Level=2] and RenderingInfo[Level='Remote level']]"));
    EXPECT_TRUE(matches(L"*[RenderingInfo[@Culture='en-US' and Keywords/Keyword='Second']]"));
    EXPECT_TRUE(matches(L"*[RenderingInfo/Keywords[Keyword[position()=2]='Second']]"));
    EXPECT_FALSE(matches(L"*[RenderingInfo[Level=2]]"));
    EXPECT_FALSE(matches(L"*[RenderingInfo/Keywords/Keyword='Third']"));
    for (const wchar_t* text : {
             L"*[UserData]",
             L"*[UserData/Notice/Name=\"O'Neill\"]",
             L"*[UserData[Notice[@Kind='urgent' and Count=0x10]]]",
             L"*[UserData/*[Count>15]/Items/Item='second']",
             L"*[UserData[Notice/Items[Item[position()=2]='second']]]",
             L"*[System[EventID=4711] and UserData/Notice[Name and Items]]",
         }) {
        EXPECT_TRUE(matches(text)) << Shown(text);
    }
    for (const wchar_t* text : {
             L"*[EventData]",
             L"*[UserData/Name]",
             L"*[UserData/Notice[@Kind='calm']]",
             L"*[UserData/Notice/Items/Item='third']",
             L"*[System[EventID=4711] and UserData/Notice/Count<16]",
         }) {
        EXPECT_FALSE(matches(text)) << Shown(text);
    }
}

}  // namespace
}  // namespace corvina::xpath
