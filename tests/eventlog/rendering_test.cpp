// Rows of events: the text of each column with and without metadata, and the conditions that reject an event.
#include <gtest/gtest.h>
#include <set>

#include "eventlog/event_date.h"
#include "support/log_machinery.h"
#include "support/scripted_events.h"

namespace corvina::test {
namespace {

constexpr std::uint64_t TicksPerHour = 36'000'000'000;

class Rendering : public ::testing::Test, public LogSurroundings {
  protected:
    void SetUp() override { logic_.Session.SwitchToComputer(L"PC", 0); }

    // Adds an event with a provider.
    ScriptedEvent& Event(const std::wstring& provider = L"Provider") {
        ScriptedEvent& event = Api.Events.emplace_back();
        return event.Text(EvtSystemProviderName, provider).Text(EvtSystemChannel, L"Application");
    }
    void Load(const VisibleColumns& columns = VisibleColumns().set(), const TextConditions& conditions = {}) {
        logic_.Loader.SetVisibleColumns(columns);
        logic_.Loader.LoadQuery(L"query", L"view", NodeId::None, conditions);
    }
    std::wstring Cell(Column column, std::size_t row = 0) {
        return logic_.Rows.Size() > row ? logic_.ColumnTexts(column)[row] : L"(no row)";
    }

    ScriptedEventLog Api;
    LogMachinery logic_{Api, *this};
};

TEST_F(Rendering, EventWithoutAnythingShowsTheFallbackTexts) {
    Api.Events.emplace_back();
    Load();
    ASSERT_EQ(logic_.Rows.Size(), 1U);
    EXPECT_EQ(Cell(Column::Type), L"");
    EXPECT_EQ(Cell(Column::Date), L"01/01/1601 00:00:00");
    EXPECT_EQ(Cell(Column::Source), L"");
    EXPECT_EQ(Cell(Column::TaskCategory), L"None");
    EXPECT_EQ(Cell(Column::EventId), L"0");
    EXPECT_EQ(Cell(Column::User), L"Not available");
    EXPECT_EQ(Cell(Column::Keywords), L"0x0");
    EXPECT_EQ(Cell(Column::ProcessCode), L"0");
    EXPECT_EQ(Cell(Column::ProcessId), L"0");
    EXPECT_EQ(Cell(Column::CorrelationId), L"Not available");
    EXPECT_EQ(Cell(Column::RelativeCorrelationId), L"Not available");
    EXPECT_EQ(Cell(Column::EventRecordId), L"0");
    EXPECT_EQ(Cell(Column::VendorGuid), L"Not available");
    EXPECT_EQ(Cell(Column::SecurityUserId), L"Not available");
    EXPECT_EQ(logic_.Rows.Text(logic_.Rows.Row(0).VersionText), L"0");
    EXPECT_TRUE(Api.OpenedPublishers.empty()) << "there is no provider without a name";
}

TEST_F(Rendering, NumbersAndIdentifiersAreShownAsTexts) {
    Event()
        .Number(EvtSystemEventID, EvtVarTypeUInt16, 4624)
        .Number(EvtSystemQualifiers, EvtVarTypeUInt16, 16384)
        .Number(EvtSystemLevel, EvtVarTypeByte, 7)
        .Number(EvtSystemTask, EvtVarTypeUInt16, 12)
        .Number(EvtSystemOpcode, EvtVarTypeByte, 200)
        .Number(EvtSystemKeywords, EvtVarTypeHexInt64, 0x8020000000000000)
        .Number(EvtSystemEventRecordId, EvtVarTypeUInt64, 18446744073709551615ULL)
        .Number(EvtSystemProcessID, EvtVarTypeUInt32, 4294967295)
        .Number(EvtSystemThreadID, EvtVarTypeUInt32, 8)
        .Number(EvtSystemTimeCreated, EvtVarTypeFileTime, FirstTestTime)
        .Text(EvtSystemComputer, L"SRV")
        .Guid(EvtSystemProviderGuid, {0xABCDEF01, 0x2345, 0x6789, {1, 2, 3, 4, 5, 6, 7, 8}})
        .Guid(EvtSystemActivityID, {1, 2, 3, {0, 0, 0, 0, 0, 0, 0, 4}})
        .Sid({1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0});
    Load();
    EXPECT_EQ(Cell(Column::EventId), L"4624");
    EXPECT_EQ(logic_.Rows.Row(0).LevelImage, 1U) << "a level of the provider's own";
    EXPECT_EQ(Cell(Column::TaskCategory), L"(12)");
    EXPECT_EQ(Cell(Column::ProcessCode), L"200");
    EXPECT_EQ(Cell(Column::Keywords), L"0x8020000000000000");
    EXPECT_EQ(Cell(Column::EventRecordId), L"18446744073709551615");
    EXPECT_EQ(Cell(Column::ProcessId), L"4294967295");
    EXPECT_EQ(Cell(Column::ThreadId), L"8");
    EXPECT_EQ(Cell(Column::Computer), L"SRV");
    EXPECT_EQ(Cell(Column::Protocol), L"Application");
    EXPECT_EQ(Cell(Column::VendorGuid), L"{ABCDEF01-2345-6789-0102-030405060708}");
    EXPECT_EQ(Cell(Column::CorrelationId), L"{00000001-0002-0003-0000-000000000004}");
    EXPECT_EQ(Cell(Column::User), L"S-1-5-18") << "an account that this computer does not know";
    EXPECT_EQ(Cell(Column::SecurityUserId), L"S-1-5-18");
}

TEST_F(Rendering, DatesAreLocalAndFollowTheLanguage) {
    Locale.OffsetTicks = TicksPerHour;
    Event().Number(EvtSystemTimeCreated, EvtVarTypeFileTime, FirstTestTime);
    Load();
    EXPECT_EQ(Cell(Column::Date), L"03/05/2024 14:07:09");
    EXPECT_EQ(logic_.Rows.Row(0).LocalTime, FirstTestTime + TicksPerHour);
    for (const int other : {i18n::German, 2, 17}) {
        Language.SetIndex(other);
        Load();
        EXPECT_EQ(Cell(Column::Date), L"05.03.2024 14.07.09");
    }
    DateBuffer buffer;
    EXPECT_EQ(EventDateText(UINT64_MAX, true, buffer), L"05/28/60056 05:36:10");
}

TEST_F(Rendering, MetadataGivesTheTextsAndIsAskedOnceForWhatRepeats) {
    Api.Publishers[L"Provider"] = ScriptedEventLog::Handle(77);
    Api.Message = [](EVT_HANDLE metadata, const ScriptedEvent& event, DWORD kind) -> std::wstring {
        if (metadata == nullptr) {
            return kind == EvtFormatMessageLevel ? L"Standard level" : L"";
        }
        switch (kind) {
            case EvtFormatMessageTask:
                return L"Task " + std::to_wstring(event.Values[EvtSystemTask].UInt16Val);
            case EvtFormatMessageKeyword:
                return std::wstring(L"First\0Second\0", 13);
            case EvtFormatMessageOpcode:
                return L"Opcode";
            case EvtFormatMessageLevel:
                return L"Level " + std::to_wstring(event.Values[EvtSystemLevel].ByteVal);
            default:
                return L"";
        }
    };
    for (std::uint64_t index = 0; index < 30; ++index) {
        Event()
            .Number(EvtSystemLevel, EvtVarTypeByte, 2 + index % 2)
            .Number(EvtSystemTask, EvtVarTypeUInt16, index % 3);
    }
    Event(L"provider").Number(EvtSystemLevel, EvtVarTypeByte, 2);
    Load(VisibleColumns(0b10001001));
    EXPECT_EQ(Cell(Column::Type, 1), L"Level 3");
    EXPECT_EQ(Cell(Column::TaskCategory, 29), L"Task 2");
    EXPECT_EQ(Cell(Column::Keywords, 0), L"First") << "the first of several";
    EXPECT_EQ(Cell(Column::Type, 30), L"Standard level") << "names of providers are compared exactly";
    EXPECT_EQ(Api.FormatCalls.size(), 2U + 3U + 1U + 3U);
    EXPECT_EQ(Api.OpenedPublishers, (std::vector<std::wstring>{L"Provider", L"provider"}));
    EXPECT_EQ(std::count(Api.Closed.begin(), Api.Closed.end(), ScriptedEventLog::Handle(77)), 1);
    EXPECT_EQ(Cell(Column::Computer), L"") << "a hidden column is not computed";
}

TEST_F(Rendering, EventsWithoutMetadataMayBringTextsOfTheirOwn) {
    Api.Message = [](EVT_HANDLE, const ScriptedEvent& event, DWORD) { return event.Xml; };
    for (const wchar_t* own : {L"one", L"", L"two"}) {
        Event().Xml = own;
    }
    Load(VisibleColumns(0b1001));
    EXPECT_EQ(logic_.ColumnTexts(Column::Type), (std::vector<std::wstring>{L"one", L"", L"two"}));
    EXPECT_EQ(logic_.ColumnTexts(Column::TaskCategory), (std::vector<std::wstring>{L"one", L"None", L"two"}));
}

TEST_F(Rendering, CategoryMessageFilesServeClassicSources) {
    Categories.Lists[L"Application/Provider"] = L"missing.dll;;second.dll";
    Categories.Messages[{L"second.dll", 7}] = L"Shell \r\n";
    Categories.Messages[{L"second.dll", 8}] = std::wstring(400, L'x');
    for (const std::uint64_t task : {7U, 7U, 8U, 9U, 0U}) {
        Event().Number(EvtSystemTask, EvtVarTypeUInt16, task);
    }
    Load();
    EXPECT_EQ(logic_.ColumnTexts(Column::TaskCategory),
              (std::vector<std::wstring>{L"Shell", L"Shell", std::wstring(260, L'x'), L"(9)", L"None"}));
    EXPECT_EQ(Categories.FileReads, 8) << "two files for each of four categories";
    EXPECT_EQ(logic_.Messages.CategoryText(L"Application", L"Provider", 0), std::nullopt);
    EXPECT_EQ(logic_.Messages.CategoryText(L"Application", L"Provider", 12), L"(12)");
}

TEST_F(Rendering, SecurityLogShowsTheResultOfTheAudit) {
    Event().Text(EvtSystemChannel, L"Security").Number(EvtSystemKeywords, EvtVarTypeHexInt64, 0x8020000000000000);
    Event().Text(EvtSystemChannel, L"Security").Number(EvtSystemKeywords, EvtVarTypeHexInt64, 0x8010000000000000);
    Event().Text(EvtSystemChannel, L"My-SECURITY-Log/x").Number(EvtSystemLevel, EvtVarTypeByte, 2);
    Event().Number(EvtSystemLevel, EvtVarTypeByte, 2);
    Load();
    EXPECT_EQ(logic_.ColumnTexts(Column::Type),
              (std::vector<std::wstring>{L"Audit Successful", L"Audit Failed", L"Audit Failed", L""}));
    EXPECT_EQ(logic_.Rows.Row(0).Level, 3);
    EXPECT_EQ(logic_.Rows.Row(1).Level, 4);
    EXPECT_EQ(logic_.Rows.Row(3).LevelImage, 2U);
    const std::vector<std::wstring> everyLevel = logic_.ColumnTexts(Column::Type);
    // As the last search left it.
    Matcher.SetOptions({.MatchCase = true});
    Load();
    EXPECT_EQ(logic_.ColumnTexts(Column::Type), (std::vector<std::wstring>{L"", L"", L"", L""}));
    Matcher.SetOptions({.UseWildcard = true});
    Load();
    EXPECT_EQ(logic_.ColumnTexts(Column::Type),
              (std::vector<std::wstring>{L"Audit Successful", L"Audit Failed", L"", L""}));
    Matcher.SetOptions({.UseRegularExpression = true});
    Load();
    EXPECT_EQ(logic_.ColumnTexts(Column::Type), everyLevel);
}

TEST_F(Rendering, UsersAreLookedUpOnceAndShownWithoutADomain) {
    const std::vector<std::uint8_t> known{1, 1, 0, 0, 0, 0, 0, 5, 19, 0, 0, 0};
    std::vector<std::byte> bytes(known.size());
    std::memcpy(bytes.data(), known.data(), known.size());
    AccountNames.Names[bytes] = std::wstring(300, L'n');
    Event().Sid(known);
    Event().Sid({1, 1, 0, 0, 0, 0, 0, 5, 20, 0, 0, 0});
    Event().Sid(known);
    Event().Sid({1, 255, 0, 0, 0, 0, 0, 5});
    Load();
    EXPECT_EQ(logic_.ColumnTexts(Column::User), (std::vector<std::wstring>{std::wstring(259, L'n'), L"S-1-5-20",
                                                                           std::wstring(259, L'n'), L"Not available"}));
    EXPECT_EQ(AccountNames.LookUps, 2);
}

TEST_F(Rendering, DescriptionWithoutAMessageShowsTheDataInstead) {
    Event(L"Source").Number(EvtSystemEventID, EvtVarTypeUInt16, 9).Xml =
        L"<Event xmlns='x'><System><EventID>9</EventID></System><EventData><Data Name='User'>A &amp; B</Data>"
        L"<Data>bare</Data><Data Name='Empty'></Data><Binary>00FF</Binary></EventData>"
        L"<UserData><x:Log xmlns:x='y'><x:Name>Main</x:Name><Empty/></x:Log></UserData></Event>";
    Load();
    const std::wstring message = Cell(Column::Message);
    EXPECT_EQ(message.find(L"The label for the event ID ( 9 ) in the source ( Source ) cannot be found."), 0U);
    const std::wstring data = L"User: A & B\nbare\nEmpty: \nBinary: 00FF\nName: Main\n";
    ASSERT_GE(message.size(), data.size());
    EXPECT_EQ(message.substr(message.size() - data.size()), data);
    Load(VisibleColumns(1));
    EXPECT_EQ(Cell(Column::Message), L"");
}

TEST_F(Rendering, LongMessagesAreFetchedWithATenTimesLargerBuffer) {
    const std::wstring longText(40000, L'm');
    Api.Message = [&](EVT_HANDLE, const ScriptedEvent&, DWORD) { return longText; };
    Event();
    Load(VisibleColumns().set(static_cast<std::size_t>(Column::Message)));
    EXPECT_EQ(Cell(Column::Message), longText);
    EXPECT_EQ(Api.FormatCalls, (std::vector<std::pair<DWORD, DWORD>>{{1, 32768}, {1, 327680}}));

    // A platform that finds every buffer too small gets no more than a bounded one.
    Api.FormatCalls.clear();
    Api.Message = [](EVT_HANDLE, const ScriptedEvent&, DWORD) { return std::wstring(80 << 20, L'm'); };
    EXPECT_EQ(logic_.Messages.FormatEventPart(nullptr, ScriptedEventLog::Handle(1000), EvtFormatMessageEvent), L"");
    EXPECT_EQ(Api.FormatCalls.back().second, 32768000U);
}

TEST_F(Rendering, ConditionsListOnlyMatchingEvents) {
    Api.Message = [](EVT_HANDLE, const ScriptedEvent& event, DWORD kind) -> std::wstring {
        const std::wstring id = std::to_wstring(event.Values[EvtSystemEventID].UInt16Val);
        if (kind == EvtFormatMessageXml) {
            return L"<Event><System><EventID>" + id + L"</EventID></System></Event>";
        }
        return kind == EvtFormatMessageEvent && id != L"3" ? L"A LOGON of " + id : L"";
    };
    for (const std::uint64_t id : {1U, 2U, 3U}) {
        Event().Number(EvtSystemEventID, EvtVarTypeUInt16, id).Xml =
            L"<Event><EventData><Data>logon data</Data></EventData></Event>";
    }
    const auto ids = [&](const TextConditions& conditions, const VisibleColumns& columns) {
        Load(columns, conditions);
        return logic_.ColumnTexts(Column::EventId);
    };
    for (const VisibleColumns& columns : {VisibleColumns(1), VisibleColumns().set()}) {
        EXPECT_EQ(ids({L"logon of", L""}, columns), (std::vector<std::wstring>{L"1", L"2"}));
        EXPECT_EQ(ids({L"DATA", L""}, columns), std::vector<std::wstring>{L"3"});
        EXPECT_TRUE(ids({L"registry", L""}, columns).empty()) << "the note's words belong to no event";
        EXPECT_EQ(ids({L"logon", L"<eventid>2</EVENTID>"}, columns), std::vector<std::wstring>{L"2"});
        EXPECT_EQ(ids({}, columns).size(), 3U);
    }
    logic_.Loader.ShowResult();
    EXPECT_EQ(View.ListCaption, L"view has 3 events");
    Load(VisibleColumns(1), {L"logon of", L""});
    logic_.Loader.LoadChannel(L"Application", LoadKind::Channel, NodeId::None);
    EXPECT_EQ(logic_.Rows.Size(), 3U) << "a plain load switches the conditions off";
}

TEST_F(Rendering, StrangeValuesNeitherStopNorCutTheLoad) {
    Event(std::wstring(L"half \xD800 surrogate \x1")).Text(EvtSystemComputer, std::wstring(3 << 20, L'c'));
    Event().Values.resize(3);                                    // fewer properties than there are
    Event().Number(EvtSystemProviderName, EvtVarTypeUInt64, 1);  // a number where a text belongs
    Event()
        .Number(EvtSystemEventID, EvtVarTypeBinary, 0xFFFFFFFF)  // a type that is no number
        .Number(EvtSystemLevel, EvtVarTypeUInt32, 0x1FF);
    Load();
    ASSERT_EQ(logic_.Rows.Size(), 4U);
    EXPECT_EQ(Cell(Column::Source, 0), L"half \xD800 surrogate \x1");
    EXPECT_EQ(Cell(Column::Computer, 0).size(), std::size_t{3} << 20);
    EXPECT_EQ(Cell(Column::Computer, 1), L"");
    EXPECT_EQ(Cell(Column::Source, 2), L"");
    EXPECT_EQ(Cell(Column::EventId, 3), L"0");
}

}  // namespace
}  // namespace corvina::test
