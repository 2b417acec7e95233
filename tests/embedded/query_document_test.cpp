// Queries given as documents: which are understood, what they take of which log, and the order of what they give.
#include "embedded/xpath/query_document.h"

#include <filesystem>
#include <random>
#include <tuple>

#include "base/path_text.h"
#include "embedded/clock.h"
#include "embedded/embedded_log_test.h"

namespace corvina::test {
namespace {

constexpr DWORD Forward = EvtQueryChannelPath;
constexpr DWORD Reverse = EvtQueryChannelPath | EvtQueryReverseDirection;
constexpr DWORD Tolerant = EvtQueryChannelPath | EvtQueryTolerateQueryErrors;

using Ids = std::vector<std::uint16_t>;

std::wstring Document(const std::wstring& queries) {
    return L"<QueryList>" + queries + L"</QueryList>";
}

std::wstring Select(const std::wstring& path, const std::wstring& filter = L"*") {
    return L"<Select Path='" + path + L"'>" + filter + L"</Select>";
}

std::wstring RecordId(std::int64_t id) {
    return L"Event/System[EventRecordID=" + std::to_wstring(id) + L"]";
}

class QueryDocumentTest : public EmbeddedLogTest {
  protected:
    EvtHandle Ask(const std::wstring& document, DWORD flags = Forward) {
        return Held(Log->EvtQuery(nullptr, nullptr, document.c_str(), flags));
    }

    std::uint32_t ErrorOf(const std::wstring& document, DWORD flags = Forward) {
        return Ask(document, flags) ? 0 : Log->GetLastError();
    }

    // The event ids of a document's result in order.
    Ids Result(const std::wstring& document, DWORD flags = Forward) {
        const EvtHandle query = Ask(document, flags);
        EXPECT_TRUE(query) << Log->GetLastError();
        return query ? EventIds(query) : Ids();
    }

    // A log whose events have these ids and, in seconds, these times; its record ids count from 1.
    void AddLog(const std::wstring& channel, const std::vector<std::pair<std::uint16_t, int>>& events) {
        std::vector<TestEvent> list;
        for (const auto& [id, seconds] : events) {
            TestEvent event;
            event.Id = id;
            event.Time = FirstTestTime + static_cast<std::uint64_t>(seconds) * 10'000'000;
            list.push_back(event);
        }
        ASSERT_TRUE(Store.AddLog(L"localhost", channel, list));
    }

    std::vector<std::pair<std::wstring, std::uint32_t>> Information(const EvtHandle& query) {
        const auto info = [&](EVT_QUERY_PROPERTY_ID property) {
            return Filled<BYTE>([&](DWORD size, BYTE* buffer, DWORD* used) {
                return Log->EvtGetQueryInfo(query.Get(), property, size, reinterpret_cast<EVT_VARIANT*>(buffer), used);
            });
        };
        const std::vector<BYTE> names = info(EvtQueryNames);
        const std::vector<BYTE> statuses = info(EvtQueryStatuses);
        const EVT_VARIANT name = Values(names, 1)[0];
        const EVT_VARIANT status = Values(statuses, 1)[0];
        EXPECT_EQ(name.Count, status.Count);
        std::vector<std::pair<std::wstring, std::uint32_t>> information;
        for (DWORD index = 0; index < name.Count; ++index) {
            information.emplace_back(name.StringArr[index], status.UInt32Arr[index]);
        }
        return information;
    }
};

TEST_F(QueryDocumentTest, WellFormedDocumentsAreUnderstood) {
    AddLog(L"Application", {{1, 0}, {2, 1}, {3, 2}});
    const std::vector<std::pair<std::wstring, Ids>> cases = {
        {L"<QueryList></QueryList>", {}},
        {L"<QueryList/>", {}},
        {Document(L"<Query Id='0' Path='Application'></Query>"), {}},
        {Document(L"<Query Id='0' Path='Application'/><Query><Suppress Path='Application'>*</Suppress></Query>"), {}},
        {Document(L"<Query Id='0' Path='Application'><Select></Select></Query>"), {1, 2, 3}},
        {Document(L"<Query Path='Application'><Select/></Query>"), {1, 2, 3}},
        {Document(L"<Query Id=\"0\" Path =\"Missing\"><Select Path = \"Application\"> * </Select></Query>"), {1, 2, 3}},
        {Document(L"<Query><Select Path='Application'>Event/System[EventRecordID&#61;2]</Select></Query>"), {2}},
        {Document(L"<Query><Select Path='&#x41;pplication'><![CDATA[Event/System[EventRecordID=2]]]></Select></Query>"),
         {2}},
        {L"\xFEFF \r\n<?xml version='1.0' encoding='UTF-16'?><!-- a -->\n<QueryList><!-- b -->\n <Query Id='x' New='1'>"
         L"<!-- c --> <Select Path='application' New='1'>Event/System[<!-- d -->EventRecordID=3]</Select>\n</Query>"
         L"</QueryList>\r\n",
         {3}},
        {Document(L" <Query Id='0'> " + Select(L"Application", RecordId(3)) + L" </Query> <Query Id='0'> " +
                  Select(L"Application", RecordId(1)) + L" </Query>"),
         {1, 3}},
    };
    for (const auto& [document, ids] : cases) {
        EXPECT_EQ(Result(document), ids) << std::string(document.begin(), document.end());
    }
}

TEST_F(QueryDocumentTest, EverythingElseIsAnInvalidQuery) {
    AddLog(L"Application", {{1, 0}});
    const std::vector<std::wstring> documents = {
        L"<",
        L"<QueryList>",
        L"<QueryList></QueryList",
        L"<QueryList></QueryList>*",
        L"<QueryList/><QueryList/>",
        L"<querylist/>",
        L"<Query Path='Application'><Select>*</Select></Query>",
        L"<ViewerConfig><QueryList/></ViewerConfig>",
        Document(L"*"),
        Document(L"<Select Path='Application'>*</Select>"),
        Document(L"<Query Path='Application'>*</Query>"),
        Document(L"<Query Path='Application'><select>*</select></Query>"),
        Document(L"<Query Path='Application'><Select>*</Select><Restrict>*</Restrict></Query>"),
        Document(L"<Query Path='Application'><Select>*<b/></Select></Query>"),
        Document(L"<Query Path='Application'><Select>*[</Select></Query>"),
        Document(L"<Query Path='Application'><Select>*</Select><Suppress>]</Suppress></Query>"),
        Document(L"<Query><Select>*</Select></Query>"),
        Document(L"<Query Path=''><Select Path=''>*</Select></Query>"),
        Document(L"<Query Path='Application'><Select Path='Missing'>*[</Select></Query>"),
        std::wstring(std::size_t{17} << 20, L'<'),
        L"<QueryList>" + std::wstring(std::size_t{17} << 20, L' ') + L"</QueryList>",
    };
    for (const std::wstring& document : documents) {
        const std::string shown(document.begin(),
                                document.begin() + std::min<std::ptrdiff_t>(std::ssize(document), 200));
        EXPECT_EQ(ErrorOf(document, Forward), error::InvalidQuery) << shown;
        EXPECT_EQ(ErrorOf(document, Tolerant), error::InvalidQuery) << shown;
    }
    std::wstring manyPaths;
    for (int path = 0; path < 10'001; ++path) {
        manyPaths += Select(L"Log" + std::to_wstring(path));
    }
    EXPECT_EQ(ErrorOf(Document(L"<Query>" + manyPaths + L"</Query>"), Tolerant), error::InvalidQuery);
    // Elements that nest a million deep must not exhaust the stack.
    std::wstring deep;
    for (int level = 0; level < 1'000'000; ++level) {
        deep += L"<Query>";
    }
    EXPECT_EQ(ErrorOf(L"<QueryList>" + deep), error::InvalidQuery);
}

TEST_F(QueryDocumentTest, SuppressTakesEventsFromItsOwnQueryAndLog) {
    AddLog(L"Application", {{1, 0}, {2, 1}, {3, 2}});
    AddLog(L"System", {{11, 10}, {12, 11}, {13, 12}});
    const std::wstring both = Select(L"Application") + Select(L"System");
    const std::wstring second = L"<Suppress Path='Application'>" + RecordId(2) + L"</Suppress>";
    EXPECT_EQ(Result(Document(L"<Query>" + both + second + L"</Query>")), (Ids{1, 3, 11, 12, 13}));
    EXPECT_EQ(Result(Document(L"<Query>" + second + both + L"</Query>")), (Ids{1, 3, 11, 12, 13}));
    // Another query that selects it still has it.
    EXPECT_EQ(Result(Document(L"<Query Id='0'>" + both + second + L"</Query><Query Id='0'>" +
                              Select(L"Application", RecordId(2)) + L"</Query>")),
              (Ids{1, 2, 3, 11, 12, 13}));
    EXPECT_EQ(Result(Document(L"<Query>" + both + L"</Query><Query>" + second + L"</Query>")).size(), 6u);
    EXPECT_EQ(Result(Document(L"<Query Path='System'><Select/><Suppress>*</Suppress>" + Select(L"Application") +
                              L"</Query>")),
              (Ids{1, 2, 3}));
    EXPECT_EQ(Result(Document(L"<Query Path='System'>" + Select(L"System", RecordId(1)) +
                              Select(L"System", RecordId(3)) + L"<Suppress>" + RecordId(3) + L"</Suppress>" +
                              L"<Suppress>" + RecordId(-5) + L"</Suppress></Query>")),
              Ids{11});
}

// The documents that the viewer makes of a filter's settings, over events that differ in one setting each.
TEST_F(QueryDocumentTest, FiltersOfTheViewerSelectWhatTheySay) {
    constexpr std::uint64_t Minute = std::uint64_t{60} * 10'000'000;
    const std::uint64_t now = embedded::CurrentFileTime();
    std::vector<TestEvent> events(6);
    for (std::size_t index = 0; index < events.size(); ++index) {
        events[index].Id = static_cast<std::uint16_t>(index + 1);
        events[index].Time = now - (85 - 10 * index) * Minute;
    }
    events[0].Level = 2;
    events[1].Provider = L"Other";
    events[2].Keywords = 0x8020000000000000;
    events[3].User = L"S-1-5-18";
    events[4].Computer = L"OTHERPC";
    events[5].Task = 7;
    ASSERT_TRUE(Store.AddLog(L"localhost", L"Application", events));
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", events));
    const std::vector<std::pair<std::wstring, Ids>> conditions = {
        {L"(TimeCreated[timediff(@SystemTime)&lt;=3600000])", {4, 5, 6}},
        {L"(Level=1 or Level=2)", {1}},
        {L"(Level=4 or Level=0) and (EventID=1 or EventID=3 or (EventID&gt;=5 and EventID&lt;=99))", {3, 5, 6}},
        {L"(band(Keywords,9007199254740992))", {3}},
        {L"(Provider[@Name='Other' or @Name='Third'])", {2}},
        {L"(Security[@UserID='S-1-5-18'])", {4}},
        {L"(Computer='OTHERPC')", {5}},
        {L"(Task=6 or Task=7)", {6}},
        {L"(TimeCreated[@SystemTime&gt;='2024-03-05T13:07:09.123Z' and @SystemTime&lt;='2024-03-06T00:00:00.000Z'])",
         {}},
    };
    const std::wstring excluded = L"EventID=76 or (EventID&gt;=5 and EventID&lt;=37)";
    for (const auto& [condition, ids] : conditions) {
        std::wstring document = L"<QueryList>  <Query Id=\"0\" Path=\"Application\">";
        Ids expected;
        for (const wchar_t* channel : {L"Application", L"System"}) {
            document += L"  <Select Path=\"" + std::wstring(channel) + L"\">*[System[" + condition + L"]]</Select>" +
                        L"  <Suppress Path=\"" + channel + L"\">*[System[" + excluded + L"]]</Suppress>";
        }
        for (const std::uint16_t id : ids) {
            expected.insert(expected.end(), id < 5 ? 2 : 0, id);
        }
        document += L"  </Query></QueryList>";
        EXPECT_EQ(Result(document), expected) << std::string(condition.begin(), condition.end());
    }
    // An empty place in a list of event ids gives no valid comparison.
    EXPECT_EQ(ErrorOf(Document(L"<Query>" + Select(L"System", L"*[System[(EventID=)]]") + L"</Query>")),
              error::InvalidQuery);
}

TEST_F(QueryDocumentTest, ALogIsReadOnceUnderWhateverNames) {
    AddLog(L"Vendor-Tool/Operational", {{1, 0}, {2, 1}});
    const std::filesystem::path log = Store.LogPath(L"localhost", L"Vendor-Tool/Operational");
    const std::wstring file = TextOfPath(std::filesystem::absolute(log));
    std::wstring backslashes = file;
    std::replace(backslashes.begin(), backslashes.end(), L'/', L'\\');
    const std::wstring query = L"<Query>" + Select(L"Vendor-Tool/Operational", RecordId(1)) +
                               Select(L"VENDOR-tool/operational") + Select(L"file://" + file) +
                               Select(L"FILE:\\\\" + backslashes) + L"<Suppress Path='file://" + file + L"'>" +
                               RecordId(2) + L"</Suppress></Query>";
    EXPECT_EQ(Result(Document(query)), Ids{1});
#ifdef _WIN32
    const std::wstring threeSlashes = L"file:///" + file;
#else
    const std::wstring threeSlashes = L"file://" + file;
    ASSERT_EQ(threeSlashes.substr(0, 8), L"file:///");
#endif
    EXPECT_EQ(Result(Document(L"<Query>" + Select(threeSlashes) + L"</Query>")), (Ids{1, 2}));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(log.parent_path());
    EXPECT_EQ(Result(Document(L"<Query>" + Select(L"file://Vendor-Tool%4Operational.evtx") + L"</Query>")).size(), 2u);
    EXPECT_EQ(Result(Document(L"<Query>" + Select(L"file://./Vendor-Tool%4Operational.evtx") + L"</Query>")).size(),
              2u);
    std::filesystem::current_path(before);
}

TEST_F(QueryDocumentTest, LogsAreMergedByTimeAndKeepTheirOwnOrder) {
    AddLog(L"A", {{1, 0}, {2, 5}, {3, 5}, {4, 9}});
    AddLog(L"B", {{11, 5}, {12, 6}, {13, 6}, {14, 20}});
    AddLog(L"C", {});
    AddLog(L"D", {{31, 30}, {32, 2}, {33, 31}});  // its clock was set back
    const std::wstring all =
        Document(L"<Query>" + Select(L"A") + Select(L"B") + Select(L"C") + Select(L"D") + L"</Query>");
    EXPECT_EQ(Result(all), (Ids{1, 2, 3, 11, 12, 13, 4, 14, 31, 32, 33}));
    EXPECT_EQ(Result(all, Reverse), (Ids{33, 14, 4, 13, 12, 11, 3, 2, 32, 31, 1}));
    // The order of the logs in the document decides between events of the same time.
    EXPECT_EQ(Result(Document(L"<Query>" + Select(L"B") + Select(L"A") + L"</Query>")),
              (Ids{1, 11, 2, 3, 12, 13, 4, 14}));
}

// More logs than chunks are held of, all of them going on at the same time.
TEST_F(QueryDocumentTest, HundredsOfLogsAreMergedAsOne) {
    std::mt19937 random(7);
    constexpr int Logs = 400;
    constexpr int DifferentLogs = 20;
    std::vector<std::vector<std::pair<std::uint16_t, int>>> contents(DifferentLogs);
    std::uint16_t id = 0;
    for (int log = 0; log < DifferentLogs; ++log) {
        int time = 0;
        for (int count = 0; count < 10; ++count) {
            time += static_cast<int>(random() % 4);
            contents[log].emplace_back(++id, time);
        }
        AddLog(L"Log" + std::to_wstring(log), contents[log]);
    }
    std::vector<std::tuple<int, int, std::uint16_t>> expected;  // time, log, id
    std::wstring selects;
    for (int log = 0; log < Logs; ++log) {
        const std::wstring channel = L"Log" + std::to_wstring(log);
        selects += Select(channel);
        for (const auto& [event, time] : contents[log % DifferentLogs]) {
            expected.emplace_back(time, log, event);
        }
        if (log >= DifferentLogs) {
            std::filesystem::copy_file(Store.LogPath(L"localhost", L"Log" + std::to_wstring(log % DifferentLogs)),
                                       Store.LogPath(L"localhost", channel));
        }
    }
    std::sort(expected.begin(), expected.end());
    Ids ids;
    for (const auto& [time, log, event] : expected) {
        ids.push_back(event);
    }
    EXPECT_EQ(Result(Document(L"<Query>" + selects + L"</Query>")), ids);
    std::reverse(ids.begin(), ids.end());
    EXPECT_EQ(Result(Document(L"<Query>" + selects + L"</Query>"), Reverse), ids);
}

TEST_F(QueryDocumentTest, EventsAreSelectedAndSuppressedOneByOne) {
    constexpr std::size_t Events = 6000;
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(Events), 500));
    std::wstring queries;
    std::wstring suppressed = Select(L"System");
    Ids taken;
    Ids left;
    for (std::size_t index = 0; index < Events; ++index) {
        if (index % 6 == 5) {
            left.push_back(static_cast<std::uint16_t>(index + 1));
        } else {
            taken.push_back(static_cast<std::uint16_t>(index + 1));
            queries = L" <Query Id='0'> " + Select(L"System", RecordId(500 + static_cast<std::int64_t>(index))) +
                      L" </Query>" + queries;
            suppressed +=
                L"<Suppress Path='System'>" + RecordId(500 + static_cast<std::int64_t>(index)) + L"</Suppress>";
        }
    }
    EXPECT_EQ(Result(Document(queries)), taken);
    EXPECT_EQ(Result(Document(L"<Query>" + suppressed + L"</Query>")), left);
}

TEST_F(QueryDocumentTest, UnreadablePathsFailTheQueryOrAreReported) {
    AddLog(L"System", {{1, 0}, {2, 1}});
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", "[Empty]\n"));
    const std::filesystem::path folder = Folder.Path();
    ASSERT_TRUE(WriteTextFile(folder / "foreign.evtx", std::string(10000, 'x')));
    const std::wstring inFolder = L"file://" + TextOfPath(folder) + L"/";
    const std::vector<std::pair<std::wstring, std::uint32_t>> paths = {
        {L"Missing", error::ChannelNotFound},
        {L"System", error::Success},
        {inFolder + L"foreign.evtx", error::EventLogFileCorrupt},
        {inFolder + L"missing.evtx", error::FileNotFound},
        {inFolder + L"no/missing.evtx", error::PathNotFound},
        {std::wstring(300, L'x'), error::InvalidChannelPath},
        {L"Empty", error::Success},
    };
    std::wstring all;
    for (const auto& [path, status] : paths) {
        EXPECT_EQ(ErrorOf(Document(L"<Query>" + Select(L"System") + Select(path) + L"</Query>")), status);
        EXPECT_EQ(ErrorOf(Document(L"<Query>" + Select(path) + L"</Query>"), Tolerant), status)
            << "nothing is left to be read";
        all += Select(path) + L"<Suppress Path='" + path + L"'>" + RecordId(1) + L"</Suppress>";
    }
    const EvtHandle query = Ask(Document(L"<Query Path='Unused'>" + all + L"</Query>"), Tolerant);
    ASSERT_TRUE(query);
    EXPECT_EQ(Information(query), paths);
    EXPECT_EQ(EventIds(query), Ids{2});
    EXPECT_TRUE(Information(Ask(Document(L""))).empty());
}

// Files anywhere can be queried where there is no store at all.
TEST_F(QueryDocumentTest, FilesNeedNoComputer) {
    const std::filesystem::path file = Folder.Path() / "saved.evtx";
    ASSERT_EQ(WriteLog(file, NumberedEvents(3)), 0u);
    const std::wstring select = Select(L"file://" + TextOfPath(file));
    EXPECT_EQ(Result(Document(L"<Query>" + select + L"</Query>"), Reverse), (Ids{3, 2, 1}));
    EXPECT_EQ(ErrorOf(Document(L"<Query>" + select + Select(L"System") + L"</Query>")), error::RpcServerUnavailable);
    EXPECT_EQ(Result(Document(L"<Query>" + select + Select(L"System") + L"</Query>"), Tolerant).size(), 3u);
}

}  // namespace
}  // namespace corvina::test
