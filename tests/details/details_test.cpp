// The details of one event: its properties as texts, the fetch from its log, and the pane that shows them.
#include <gtest/gtest.h>

#include "details/details_pane.h"
#include "support/log_machinery.h"
#include "support/scripted_events.h"

namespace corvina::test {
namespace {

std::wstring Lines(std::initializer_list<const wchar_t*> lines) {
    std::wstring text;
    for (const wchar_t* line : lines) {
        text += line;
        text += L'\n';
    }
    return text;
}

TEST(EventProperties, AreWrittenOneALine) {
    ScriptedEventLog api;
    LogSurroundings around;
    LogMachinery logic(api, around);
    EventDetails details({logic.Session, logic.Errors, logic.Messages, logic.Descriptions, around.Settings,
                          around.Language, around.Debug});
    api.Events.emplace_back()
        .Text(EvtSystemProviderName, L"Contoso")
        .Guid(EvtSystemProviderGuid, {0xABCDEF01, 0x2345, 0x6789, {1, 2, 3, 4, 5, 6, 7, 8}})
        .Number(EvtSystemEventID, EvtVarTypeUInt16, 4624)
        .Number(EvtSystemVersion, EvtVarTypeByte, 2)
        .Number(EvtSystemLevel, EvtVarTypeByte, 4)
        .Number(EvtSystemTask, EvtVarTypeUInt16, 65535)
        .Number(EvtSystemOpcode, EvtVarTypeByte, 9)
        .Number(EvtSystemKeywords, EvtVarTypeHexInt64, 0x8020000000000000)
        .Number(EvtSystemTimeCreated, EvtVarTypeFileTime, FirstTestTime + 1234567)
        .Number(EvtSystemEventRecordId, EvtVarTypeUInt64, 5000000000)
        .Guid(EvtSystemActivityID, {1, 2, 3, {0, 0, 0, 0, 0, 0, 0, 4}})
        .Guid(EvtSystemRelatedActivityID, {5, 2, 3, {0, 0, 0, 0, 0, 0, 0, 4}})
        .Number(EvtSystemProcessID, EvtVarTypeUInt32, 4294967295)
        .Number(EvtSystemThreadID, EvtVarTypeUInt32, 6)
        .Text(EvtSystemChannel, L"Application")
        .Text(EvtSystemComputer, L"SRV")
        .Sid({1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0});
    api.Message = [](EVT_HANDLE, const ScriptedEvent&, DWORD kind) {
        return std::wstring(kind == EvtFormatMessageOpcode ? L"Send" : L"");
    };
    std::wstring left;
    std::wstring right;
    EXPECT_EQ(details.RenderSystemProperties(ScriptedEventLog::Handle(1000), nullptr, left, right), 4624U);
    EXPECT_EQ(left,
              Lines({L"Vendor name: Contoso", L"Vendor GUID: {ABCDEF01-2345-6789-0102-030405060708}", L"Event ID: 4624",
                     L"Version: 2", L"Level: 4", L"Task: 65535", L"Opcode: Send", L"Keywords: 0x8020000000000000"}));
    EXPECT_EQ(right, Lines({L"Creation time: 03/05/2024 13:07:09.123456700)", L"Event Record ID: 5000000000",
                            L"Correlation activity ID: {00000001-0002-0003-0000-000000000004}",
                            L"Correlation Related Activity ID: {00000005-0002-0003-0000-000000000004}",
                            L"Execution process ID: 4294967295", L"Execution thread id: 6", L"Channel: Application",
                            L"Computer: SRV", L"Security User Id: S-1-5-18"}));

    // What an event lacks leaves its line without a value; only the provider's GUID says so.
    api.Events[0] = ScriptedEvent().Number(EvtSystemOpcode, EvtVarTypeByte, 9);
    api.Message = nullptr;
    details.RenderSystemProperties(ScriptedEventLog::Handle(1000), nullptr, left, right);
    EXPECT_NE(left.find(L"Vendor GUID: NULL\n"), std::wstring::npos);
    EXPECT_NE(left.find(L"Opcode: 9\nKeywords: 0x0\n"), std::wstring::npos);
    EXPECT_NE(right.find(L"Creation time: 01/01/1601 00:00:00.0)\n"), std::wstring::npos);
    EXPECT_NE(right.find(L"Correlation activity ID: \n"), std::wstring::npos);
    EXPECT_NE(right.find(L"Security User Id: \n"), std::wstring::npos);
}

class Details : public ::testing::Test, public StoreMachinery {
  protected:
    void SetUp() override {
        std::vector<TestEvent> events = NumberedEvents(30);
        events[6].Data = {{L"User", L"anna"}, {L"", L"bare"}};
        ASSERT_TRUE(Files.AddLog(L"localhost", L"Application", events));
        ASSERT_TRUE(Files.AddManifest(L"localhost", L"Other", SimpleManifest("Other", {{1, "Hello %1"}})));
        TestEvent greeting;
        greeting.Provider = L"Other";
        greeting.Data = {{L"Who", L"world"}};
        ASSERT_TRUE(Files.AddLog(L"localhost", L"System", {greeting}));
        Start();
        details_ = std::make_unique<EventDetails>(EventDetails::Parts{Logic->Session, Logic->Errors, Logic->Messages,
                                                                      Logic->Descriptions, Settings, Language, Debug});
        rows_ = std::make_unique<RowDetails>(*details_, Logic->Rows, Logic->Loader);
        pane_ = std::make_unique<DetailsPane>(*rows_, paneView_);
        View.OnSelectRow = [this](std::size_t row) { pane_->ShowRow(row); };
    }
    void TearDown() override { EXPECT_EQ(End(), 0U) << "handles were left open"; }

    bool Fetch(std::wstring_view log, std::uint32_t recordId, EventSource source = EventSource::Channel) {
        return details_->FetchEventByRecordId(log, source, L"Test-Provider", recordId, texts_) == FetchResult::Found;
    }

    RecordingDetailsPane paneView_;
    std::unique_ptr<EventDetails> details_;
    std::unique_ptr<RowDetails> rows_;
    std::unique_ptr<DetailsPane> pane_;
    EventTexts texts_;
};

TEST_F(Details, EventIsFetchedFromItsChannelByRecordIdentifier) {
    Debug.Lines.clear();
    ASSERT_TRUE(Fetch(L"Application", 7));
    EXPECT_EQ(Api->Queries.back().Query, L"Event/System[EventRecordID=7]");
    EXPECT_EQ(Api->Queries.back().Flags, 1U);
    EXPECT_EQ(Api->LastBatchSize, 1U);
    EXPECT_NE(texts_.LeftProperties.find(L"Event ID: 7\n"), std::wstring::npos);
    EXPECT_EQ(texts_.Xml.find(L"<Event "), 0U);
    EXPECT_EQ(texts_.Xml.find(L'\n'), std::wstring::npos);
    // Its provider is unknown here, which must not hide the event.
    EXPECT_TRUE(Debug.Has(L"EvtOpenPublisherMetadata failed with 15002\n"));
    EXPECT_EQ(texts_.Description.find(L"The label for the event ID ( 7 ) in the source ( Test-Provider )"), 0U);
    EXPECT_NE(texts_.Description.find(L"\n\nUser: anna\nbare\n"), std::wstring::npos);

    const EventTexts before = texts_;
    EXPECT_FALSE(Fetch(L"Application", 31));
    EXPECT_TRUE(Debug.Has(L"EvtNext failed with 259\n"));
    EXPECT_EQ(texts_.Description, L"");
    EXPECT_EQ(texts_.LeftProperties, before.LeftProperties);
    EXPECT_FALSE(Fetch(L"Application", 2147483648U));
    EXPECT_EQ(Api->Queries.back().Query, L"Event/System[EventRecordID=-2147483648]");
    EXPECT_TRUE(Boxes.Errors.empty());
}

TEST_F(Details, QueryFailuresAreShownWithTheirCode) {
    EXPECT_FALSE(Fetch(L"Missing", 1));
    ASSERT_EQ(Boxes.Errors.size(), 1U);
    SystemTexts.Texts[15007] = L"channel text";
    SystemTexts.Texts[5] = L"denied";
    EXPECT_EQ(Boxes.Errors[0].Text, L"Error: 0x3a9f");
    EXPECT_FALSE(Fetch(L"Missing", 1));
    EXPECT_EQ(Boxes.Errors[1].Text, L"Channel was not found\r\nchannel text");
    EXPECT_EQ(Boxes.Errors[1].Title, L"Error");
    Api->FailNextCall(Operation::Query, 5);
    EXPECT_FALSE(Fetch(L"Application", 1));
    EXPECT_EQ(Boxes.Errors[2].Text, L"EvtQuery failed\r\ndenied");

    Logic->Session.Close();
    const std::size_t queries = Api->Queries.size();
    EXPECT_FALSE(Fetch(L"Application", 1));
    EXPECT_EQ(Api->Queries.size(), queries);
}

TEST_F(Details, AnyFailureLeavesNoHandleAndNoStaleDescription) {
    for (const Operation operation : {Operation::OpenPublisherMetadata, Operation::Query, Operation::Next,
                                      Operation::CreateRenderContext, Operation::Render, Operation::FormatMessage}) {
        for (std::size_t call = 1; call <= 3; ++call) {
            texts_.Description = L"stale";
            const std::size_t open = Api->OpenHandles();
            Api->FailCall(operation, Api->Calls(operation) + call, 8);
            Fetch(L"Application", 7);
            EXPECT_EQ(Api->OpenHandles(), open);
            EXPECT_NE(texts_.Description, L"stale");
            Api->StopFailing();
        }
    }
}

TEST_F(Details, PaneShowsTheSelectedRowOfAChannel) {
    Logic->Select(L"Windows Logs/System");
    EXPECT_EQ(paneView_.Description, L"Hello world");
    EXPECT_NE(paneView_.Right.find(L"Channel: System\n"), std::wstring::npos);
    EXPECT_NE(paneView_.Xml.find(L"\n  <System>\n"), std::wstring::npos) << "indented for reading";
    const int shown = paneView_.Shown;
    pane_->ShowRow(99);
    EXPECT_EQ(paneView_.Shown, shown);

    // Nothing of the event can be had any more: the description goes, the rest stays.
    const std::wstring left = paneView_.Left;
    Api->FailNextCall(Operation::Next, 6);
    pane_->ShowRow(0);
    EXPECT_EQ(paneView_.Description, L"");
    EXPECT_EQ(paneView_.Left, left);

    pane_->ShowNoEvents(L"nothing");
    EXPECT_EQ(paneView_.Left, L"nothing");
    EXPECT_EQ(paneView_.Description, L"nothing");
    EXPECT_EQ(paneView_.Xml, L"");
}

TEST_F(Details, PaneAsksTheRightLog) {
    TemporaryFolder elsewhere;
    const std::filesystem::path file = elsewhere.Path() / "saved.evtx";
    ASSERT_EQ(WriteLog(file, NumberedEvents(3)), 0U);
    Settings.Set(SavedLogsSection, L"Saved", file.wstring());
    System.Files = {file.wstring()};
    Logic->Builder.AddSavedLogNode(0, L"Saved");
    ASSERT_TRUE(Logic->Select(L"Saved Logs/Saved"));
    EXPECT_EQ(Api->Queries.back().Path, file.wstring());
    EXPECT_EQ(Api->Queries.back().Flags, 2U);
    EXPECT_EQ(Api->Queries.back().Session, Logic->Session.LocalSession());
    EXPECT_NE(paneView_.Left.find(L"Event ID: 3\n"), std::wstring::npos);

    // A structured view mixes logs: each row names its own.
    Logic->Rows.Reset(DefaultColumns());
    Logic->Loader.LoadQuery(L"*", L"view", NodeId::None);
    EventRow row;
    row.RecordId = 1;
    row.ChannelName = Logic->Rows.AddText(L"System");
    row.ProviderName = Logic->Rows.AddText(L"Other");
    Logic->Rows.Append(row);
    pane_->ShowRow(Logic->Rows.Size() - 1);
    EXPECT_EQ(Api->Queries.back().Path, L"System");
    EXPECT_EQ(paneView_.Description, L"Hello world");
}

}  // namespace
}  // namespace corvina::test
