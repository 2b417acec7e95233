// The file format of stored filters: what is written reads back equal, and what people or damage make of a file is read
// as far as its meaning is clear.
#include "query/stored_filter.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "base/utf.h"
#include "query/stored_filter_text.h"

namespace corvina {
namespace {

using namespace std::string_literals;

constexpr std::string_view Query =
    "<QueryList>  <Query Id=\"0\" Path=\"System\">  <Select Path=\"System\">*[System[(EventID&gt;=5)]]</Select>  "
    "</Query></QueryList>";

// "<StoredFilter><Criteria>" around what a hand has written there.
std::string WithCriteria(std::string_view criteria) {
    return "<StoredFilter>\n<Criteria>\n" + std::string(criteria) + "\n</Criteria></StoredFilter>";
}

StoredFilter Parsed(std::string_view bytes) {
    StoredFilterFault fault;
    const auto filter = ReadStoredFilter(bytes, fault);
    EXPECT_TRUE(filter) << bytes << Utf8FromWide(fault.Text);
    return filter.value_or(StoredFilter());
}

// What is wrong with a document, and in which line: "2: ...".
std::string Fault(std::string_view bytes) {
    StoredFilterFault fault;
    EXPECT_FALSE(ReadStoredFilter(bytes, fault)) << bytes;
    EXPECT_EQ(fault.ErrorCode, 0U);
    return std::to_string(fault.Line) + ": " + Utf8FromWide(fault.Text);
}

// Draws filters whose texts are made of everything that XML, line ends, escapes and UTF-16 make difficult.
class RandomFilters {
  public:
    StoredFilter Next() {
        StoredFilter filter;
        for (std::wstring* text : {&filter.Name, &filter.Query, &filter.Criteria.EventIds, &filter.Criteria.Keywords,
                                   &filter.Criteria.Providers, &filter.Criteria.User, &filter.Criteria.Computer,
                                   &filter.Criteria.Channels}) {
            *text = Text();
        }
        filter.IsQueryEdited = Below(2) == 1;
        filter.Criteria.Time = {Below(2) == 1, Below(6), Moment(), Moment()};
        filter.Criteria.Levels = {Below(2) == 1, Below(2) == 1, Below(2) == 1, Below(2) == 1, Below(2) == 1};
        for (std::uint32_t count = Below(4); count > 0; --count) {
            filter.Criteria.Tasks.push_back(Below(2) == 0 ? Below(100) : 0xFFFFFFFF - Below(3));
        }
        return filter;
    }

  private:
    std::uint32_t Below(std::uint32_t end) { return std::uniform_int_distribution<std::uint32_t>(0, end - 1)(random_); }

    std::wstring Text() {
        static const std::vector<std::wstring> pieces = {L" ",
                                                         L"\t",
                                                         L"\r\n",
                                                         L"\n",
                                                         L"\r",
                                                         L"_",
                                                         L"_x",
                                                         L"_x0041_",
                                                         L"x000",
                                                         L"x005F_",
                                                         L"0041_",
                                                         L"<",
                                                         L"&",
                                                         L"&#65;",
                                                         L"\"",
                                                         L"'",
                                                         L"]]>",
                                                         L"<![CDATA[",
                                                         L"-->",
                                                         L"a",
                                                         L"\x1",
                                                         L"\x7F",
                                                         L"\xE4",
                                                         L"\x85",
                                                         L"\x2028",
                                                         L"\xFEFF",
                                                         L"\xFFFE",
                                                         L"\xFFFF",
                                                         L"\U0001F600",
                                                         L"%s",
                                                         std::wstring(1, 0xD83D),
                                                         std::wstring(1, 0xDE00),
                                                         std::wstring(1, L'\0')};
        std::wstring text;
        for (std::uint32_t count = Below(2) * Below(12); count > 0; --count) {
            text += pieces[Below(static_cast<std::uint32_t>(pieces.size()))];
        }
        return text;
    }

    LocalMoment Moment() {
        const auto number = [this](std::uint32_t low, std::uint32_t high) {
            return static_cast<std::uint16_t>(low + Below(high - low + 1));
        };
        return {number(1601, 9999), number(1, 12), number(1, 28), number(0, 23),
                number(0, 59),      number(0, 59), number(0, 999)};
    }

    std::mt19937 random_{4711};
};

TEST(StoredFilter, WhatIsWrittenReadsBackEqual) {
    RandomFilters random;
    std::string previous;
    for (int count = 0; count < 2'000; ++count) {
        const StoredFilter filter = random.Next();
        StoredFilterFault fault;
        const std::string bytes = WriteStoredFilter(filter);
        ASSERT_EQ(ReadStoredFilter(bytes, fault), filter) << bytes;
        previous = WriteStoredFilter(filter, previous);
        ASSERT_EQ(ReadStoredFilter(previous, fault), filter) << "over the one before: " << previous;
    }
}

TEST(StoredFilter, TheDocumentIsPlainToRead) {
    StoredFilter filter;
    filter.Name = L"Failed \x201Clogons\x201D & more ";
    filter.Criteria.Time = {true, 0, {2026, 11, 22, 1, 16, 28, 250}, {2026, 11, 23, 0, 0, 0, 0}};
    filter.Criteria.Levels.Error = filter.Criteria.Levels.Verbose = true;
    filter.Criteria.EventIds = L"4625, -76";
    filter.Criteria.User = L"CONTOSO\\jd_x";
    filter.Criteria.Tasks = {1, 12544};
    filter.Query = WideFromUtf8(Query);
    EXPECT_EQ(WriteStoredFilter(filter),
              "<?xml version=\"1.0\"?>\n"
              "<StoredFilter Version=\"1\">\n"
              "  <Name>Failed \xE2\x80\x9Clogons\xE2\x80\x9D &amp; more_x0020_</Name>\n"
              "  <Criteria>\n"
              "    <Time Custom=\"true\" From=\"2026-11-22T01:16:28.250\" To=\"2026-11-23T00:00:00.000\" />\n"
              "    <Levels>Error, Verbose</Levels>\n"
              "    <EventIds>4625, -76</EventIds>\n"
              "    <User>CONTOSO\\jd_x005F_x</User>\n"
              "    <Tasks>1, 12544</Tasks>\n"
              "  </Criteria>\n"
              "  <Query><![CDATA[" +
                  std::string(Query) +
                  "]]></Query>\n"
                  "</StoredFilter>\n");
}

TEST(StoredFilter, FilesEditedByHandAreRead) {
    EXPECT_EQ(Parsed("<StoredFilter/>"), StoredFilter());
    EXPECT_EQ(Parsed("<?xml version='1.0'?><!-- mine --><!DOCTYPE x [<!ENTITY e 'x'>]>\r\n"
                     "<StoredFilter Version=' 1 ' Note='x'>text<Colour>red</Colour>\r\n"
                     "<Criteria><Time/><Levels/><Channels/><Tasks> </Tasks></Criteria><Query/></StoredFilter>\r\n"),
              StoredFilter());

    const FilterCriteria criteria =
        Parsed(WithCriteria("<EventIds>\r\n 1, <!-- not 2 --> 3\r\n </EventIds><EventIds>9</EventIds>"
                            "<User>a&amp;b & &e; c<![CDATA[<d>]]></User><Computer>_x0041_x004z_</Computer>"
                            "<Levels>Warning,Critical , Warning,</Levels>"
                            "<Tasks> 7,0x10 </Tasks>"
                            "<Time Choice=' 5' Custom=' 1' From='2026-02-28' To='2026-02-28T23:59'/>"))
            .Criteria;
    EXPECT_EQ(criteria.EventIds, L"1,  3");
    EXPECT_EQ(criteria.User, L"a&b & &e; c<d>");
    EXPECT_EQ(criteria.Computer, L"Ax004z_");
    EXPECT_EQ(criteria.Levels, (LevelMarks{true, false, true, false, false}));
    EXPECT_EQ(criteria.Tasks, (std::vector<std::uint32_t>{7, 16}));
    EXPECT_EQ(criteria.Time, (TimeCriterion{true, 5, {2026, 2, 28, 0, 0, 0, 0}, {2026, 2, 28, 23, 59, 0, 0}}));

    // A query may be put there as it is shown elsewhere, with its layout.
    EXPECT_EQ(
        Parsed("<StoredFilter><Query Edited='true'>\n<QueryList>\n <Query Id='0'>\n  <Select Path='System'>"
               "*[System[EventID&gt;=5]]</Select>\n </Query>\n</QueryList>\n</Query></StoredFilter>"),
        (StoredFilter{
            {},
            {},
            L"<QueryList><Query Id=\"0\"><Select Path=\"System\">*[System[EventID&gt;=5]]</Select></Query></QueryList>",
            true}));
}

TEST(StoredFilter, EveryEncodingThatADocumentNamesIsRead) {
    const std::wstring text = L"<StoredFilter><Name>\xE4\x20AC</Name></StoredFilter>";
    std::string utf16 = "\xFF\xFE";
    AppendUtf16Bytes(text, utf16);
    EXPECT_EQ(Parsed(utf16).Name, L"\xE4\x20AC");
    EXPECT_EQ(Parsed("\xEF\xBB\xBF" + Utf8FromWide(text)).Name, L"\xE4\x20AC");
    EXPECT_EQ(Parsed("<?xml version='1.0' encoding='ISO-8859-1'?><StoredFilter><Name>\xE4</Name></StoredFilter>").Name,
              L"\xE4");
    EXPECT_EQ(Parsed(WriteStoredFilter({L"\xE4", {}, {}, false}, utf16)).Name, L"\xE4");
    EXPECT_EQ(Fault("<StoredFilter>\n<Name>\xE4</Name></StoredFilter>"), "2: the text is not UTF-8");
    EXPECT_EQ(Fault("<StoredFilter/>\n\0x"s), "2: the text is not UTF-8");
    EXPECT_EQ(Fault("<?xml version='1.0' encoding='ISO-8859-1'?>\n" + WithCriteria("<Levels>\xE4</Levels>")),
              "0: Levels: \"\xC3\xA4\" is not a level");
}

TEST(StoredFilter, RewritingKeepsWhatOthersHaveAdded) {
    const std::string previous =
        "<!-- for the night shift -->\n<StoredFilter Note='x'><Colour>red</Colour><Name lang='en'>Old</Name>"
        "<Criteria><!-- all of them --><Levels>Error</Levels><Levels>Critical</Levels><Later "
        "a='1'/></Criteria></StoredFilter>";
    StoredFilter filter = Parsed(previous);
    filter.Name = L"New";
    filter.Criteria.Levels = {};
    filter.Criteria.EventIds = L"7";
    EXPECT_EQ(WriteStoredFilter(filter, previous),
              "<?xml version=\"1.0\"?>\n"
              "<!-- for the night shift -->\n"
              "<StoredFilter Note=\"x\" Version=\"1\">\n"
              "  <Colour>red</Colour>\n"
              "  <Name lang=\"en\">New</Name>\n"
              "  <Criteria>\n"
              "    <!-- all of them -->\n"
              "    <Later a=\"1\" />\n"
              "    <EventIds>7</EventIds>\n"
              "  </Criteria>\n"
              "</StoredFilter>\n");
}

TEST(StoredFilter, WhatIsNotUnderstoodIsRefusedWithItsPlace) {
    EXPECT_EQ(Fault(""), "1: No document element found");
    EXPECT_EQ(Fault("<StoredFilter>\n<Name>x</Criteria>"), "2: Start-end tags mismatch");
    EXPECT_EQ(Fault("<QueryList/>"), "0: the document is not a stored filter");
    EXPECT_EQ(Fault("<StoredFilter Version='2'/>"), "0: the filter was stored by a later version of this program (2)");
    for (const std::string version : {"0", "-1", "one", "1.0", ""}) {
        EXPECT_EQ(Fault("<StoredFilter Version='" + version + "'/>"),
                  "0: \"" + version + "\" is not the version of a stored filter");
    }
    EXPECT_EQ(Fault(WithCriteria("<Levels>Error, Eror</Levels>")), "3: Levels: \" Eror\" is not a level");
    EXPECT_EQ(Fault(WithCriteria("<Levels>Error,,Critical</Levels>")), "3: Levels: \"\" is not a level");
    EXPECT_EQ(Fault(WithCriteria("<Tasks>,7</Tasks>")), "3: Tasks: \"\" is not the number of a task");
    EXPECT_EQ(Fault(WithCriteria("<Time Custom='on' From='2026-02-28'/>")),
              "3: Time: \"on\" is not \"true\" or \"false\"");
    EXPECT_EQ(Fault("<StoredFilter>\n\n<Query Edited='?'/></StoredFilter>"),
              "3: Query: \"?\" is not \"true\" or \"false\"");
    EXPECT_EQ(Fault(WithCriteria("\n<Tasks>4294967296</Tasks>")),
              "4: Tasks: \"4294967296\" is not the number of a task");
    EXPECT_EQ(Fault(WithCriteria("<Time Choice='6'/>")), "3: Time: \"6\" is not a number from 0 to 5");
    for (const std::string moment : {"2026-02-29", "2026-13-01", "1600-12-31", "2026-1-1", "2026-01-01 10:00",
                                     "2026-01-01T10:00:00.5", "2026-01-01T24:00", "2026-01-01T10:00:60"}) {
        EXPECT_EQ(Fault(WithCriteria("<Time To='" + moment + "'/>")),
                  "3: Time: \"" + moment + "\" is not a date and time such as 2026-11-22T01:16:28.250");
    }
}

TEST(StoredFilter, FilesThatWouldCostTooMuchAreRefused) {
    const auto repeated = [](std::string_view text, std::size_t count) {
        std::string whole;
        for (std::size_t index = 0; index < count; ++index) {
            whole += text;
        }
        return whole;
    };
    const std::string deep = "<StoredFilter>" + repeated("<a>", 90'000) + repeated("</a>", 90'000) + "</StoredFilter>";
    EXPECT_EQ(Fault(deep), "0: the elements are nested too deep");
    EXPECT_EQ(Fault("<StoredFilter>" + repeated("<a/>", 200'000) + "</StoredFilter>"),
              "0: the file is too large for a stored filter");
    EXPECT_EQ(Fault(std::string(MaximumStoredFilterSize + 1, ' ')), "0: the file is too large for a stored filter");
    const std::string large =
        "<StoredFilter><Name>" + std::string(MaximumStoredFilterSize - 100, '&') + "</Name></StoredFilter>";
    EXPECT_EQ(Parsed(large).Name.size(), MaximumStoredFilterSize - 100);
    // Taking out the many elements of one name takes one pass, not one for each.
    const std::string many = "<StoredFilter>" + repeated("<a/>", 99'000) + repeated("<Name>x</Name>", 50'000) +
                             "<Query" + repeated(" a=''", 150'000) + repeated(" Edited='1'", 150'000) +
                             "/></StoredFilter>";
    EXPECT_TRUE(Parsed(many).IsQueryEdited);
    EXPECT_EQ(Parsed(WriteStoredFilter({}, many)), StoredFilter());
    // Entities are not expanded, so they cannot grow.
    EXPECT_EQ(
        Parsed("<!DOCTYPE x [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;&a;'>]><StoredFilter><Name>&b;</Name></StoredFilter>")
            .Name,
        L"&b;");
}

}  // namespace
}  // namespace corvina
