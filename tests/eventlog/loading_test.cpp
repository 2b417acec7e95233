// Loading a log into the list: order, batches, captions, failures, and requests that arrive during a load.
#include <gtest/gtest.h>
#include <set>

#include "support/log_machinery.h"

namespace corvina::test {
namespace {

constexpr DWORD NewestOfChannel = 0x1201;
constexpr DWORD NewestOfFile = 0x1202;
constexpr DWORD OldestOfFile = 0x1002;

class Loading : public ::testing::Test, public StoreMachinery {
  protected:
    void TearDown() override {
        EXPECT_EQ(View.Locks, 0);
        EXPECT_FALSE(View.WasLockedTwice);
        if (Logic != nullptr) {
            EXPECT_EQ(End(), 0U) << "handles were left open";
        }
    }

    void AddApplication(std::size_t events) {
        ASSERT_TRUE(Files.AddLog(L"localhost", L"Application", NumberedEvents(events)));
    }
    // Writes a log outside the store and enters it as a saved log; its path.
    std::wstring SaveLog(const std::wstring& key, const std::vector<TestEvent>& events) {
        const std::filesystem::path file = savedLogs_.Path() / "saved.evtx";
        EXPECT_EQ(WriteLog(file, events), 0U);
        Settings.Set(SavedLogsSection, key, file.wstring());
        System.Files = {file.wstring()};
        return file.wstring();
    }
    std::wstring CaptionOf(std::wstring_view path) const {
        return Logic->Tree.Find(Logic->Tree.FindByPath(path))->Caption;
    }

  private:
    TemporaryFolder savedLogs_;
};

TEST_F(Loading, ChannelIsFetchedNewestFirstInBatchesOfTen) {
    AddApplication(25);
    LogMachinery& logic = Start();
    ASSERT_TRUE(logic.Select(L"Windows Logs/Application"));

    ASSERT_EQ(logic.Rows.Size(), 25U);
    EXPECT_EQ(logic.Rows.Row(0).RecordId, 25U);
    EXPECT_EQ(logic.Rows.Row(24).RecordId, 1U);
    EXPECT_EQ(Api->Calls(Operation::Next), 4U);
    EXPECT_EQ(Api->LastBatchSize, 10U);
    EXPECT_EQ(Api->LastTimeout, INFINITE);
    ASSERT_EQ(Api->Queries.size(), 1U);
    EXPECT_EQ(Api->Queries[0].Flags, NewestOfChannel);
    EXPECT_EQ(Api->Queries[0].Path, L"Application");
    EXPECT_EQ(Api->Queries[0].Query, std::nullopt);
    EXPECT_EQ(Api->Queries[0].Session, logic.Session.CurrentSession());
    for (const std::wstring& line : Debug.Lines) {
        EXPECT_EQ(line.find(L"failed"), std::wstring::npos) << "a normal end is no failure";
    }

    EXPECT_EQ(View.ListCaption, L"Application has 25 events");
    EXPECT_EQ(View.RowCount, 25U);
    EXPECT_EQ(View.SelectedRows, std::vector<std::size_t>{0});
    EXPECT_EQ(View.StatusTexts, (std::vector<std::wstring>{L"Loading event logs. Please wait...", L""}));
    EXPECT_TRUE(NoEventsTexts.empty());
}

TEST_F(Loading, EmptyLogSaysSo) {
    AddApplication(0);
    LogMachinery& logic = Start();
    ASSERT_TRUE(logic.Select(L"Windows Logs/Application"));
    EXPECT_EQ(View.ListCaption, L"Application has 0 events");
    EXPECT_TRUE(View.SelectedRows.empty());
    EXPECT_EQ(NoEventsTexts, std::vector<std::wstring>{L"No events in this view."});
    EXPECT_EQ(Api->Calls(Operation::Next), 1U);
}

TEST_F(Loading, CaptionOfTheNodeFollowsTheLogAndReloadSeesNewEvents) {
    AddApplication(3);
    LogMachinery& logic = Start();
    EXPECT_EQ(CaptionOf(L"Windows Logs/Application"), L"Application (3)");
    ASSERT_TRUE(logic.Select(L"Windows Logs/Application"));
    AddApplication(9);
    logic.Selection.Reload();
    EXPECT_EQ(logic.Rows.Size(), 9U);
    EXPECT_EQ(CaptionOf(L"Windows Logs/Application"), L"Application (9)");

    logic.Tree.SetCaption(logic.Tree.Selected(), L"No count");
    logic.Selection.Reload();
    EXPECT_EQ(logic.Tree.Find(logic.Tree.Selected())->Caption, L"No count");
}

TEST_F(Loading, MessagesAreDispatchedBeforeEvery101stEventAcrossLoads) {
    AddApplication(150);
    LogMachinery& logic = Start();
    std::vector<std::size_t> rowsAtDispatch;
    Pump.OnDispatch = [&] {
        EXPECT_EQ(View.Locks, 1);
        rowsAtDispatch.push_back(logic.Rows.Size());
    };
    logic.Select(L"Windows Logs/Application");
    logic.Selection.Reload();
    // 100 rows in the first load; of its 150 events 49 count for the second load, whose 52nd is the 101st.
    EXPECT_EQ(rowsAtDispatch, (std::vector<std::size_t>{100, 51}));
}

TEST_F(Loading, LatestRequestFromInsideALoadWinsAndIsCarriedOutAfterIt) {
    AddApplication(250);
    ASSERT_TRUE(Files.AddLog(L"localhost", L"System", NumberedEvents(7)));
    ASSERT_TRUE(Files.AddLog(L"localhost", L"Setup", NumberedEvents(4)));
    LogMachinery& logic = Start();
    int handlers = 0;
    Pump.OnDispatch = [&] {
        ++handlers;
        const std::size_t rows = logic.Rows.Size();
        EXPECT_TRUE(logic.Select(L"Windows Logs/System"));
        EXPECT_TRUE(logic.Select(L"Windows Logs/Setup"));
        EXPECT_TRUE(logic.Select(L"Windows Logs"));  // a folder loads nothing and cancels nothing
        logic.Loader.LoadChannel(L"System", LoadKind::Channel, NodeId::None);
        EXPECT_EQ(logic.Rows.Size(), rows) << "a handler must not change the rows of the running load";
        EXPECT_EQ(logic.Loader.View().ChannelName, L"Application");
    };
    logic.Select(L"Windows Logs/Application");
    EXPECT_EQ(handlers, 1);
    EXPECT_EQ(logic.Loader.View().ChannelName, L"Setup");
    EXPECT_EQ(logic.Rows.Size(), 4U);
    EXPECT_EQ(View.ListCaption, L"Setup has 4 events");
    EXPECT_EQ(View.SelectedRows, std::vector<std::size_t>{0});
    for (const QueryCall& query : Api->Queries) {
        EXPECT_NE(query.Path, L"System") << "only the latest request is carried out";
    }
}

TEST_F(Loading, FolderSelectedDuringALoadLetsItRunToItsEnd) {
    AddApplication(250);
    LogMachinery& logic = Start();
    Pump.OnDispatch = [&] { logic.Select(L"Windows Logs"); };
    logic.Select(L"Windows Logs/Application");
    EXPECT_EQ(logic.Rows.Size(), 250U);
    EXPECT_EQ(View.SelectedRows, std::vector<std::size_t>{0});
}

TEST_F(Loading, RowsMayBeRemovedAndSortedDuringALoad) {
    AddApplication(250);
    LogMachinery& logic = Start();
    Pump.OnDispatch = [&] {
        logic.Rows.EraseIf([](std::size_t row) { return row % 2 == 0; });
        std::vector<std::uint32_t> reversed(logic.Rows.Size());
        for (std::size_t index = 0; index < reversed.size(); ++index) {
            reversed[index] = static_cast<std::uint32_t>(reversed.size() - 1 - index);
        }
        logic.Rows.Reorder(reversed);
    };
    logic.Select(L"Windows Logs/Application");
    // 100 rows, 50 stay; 101 more, 76 of the 151 are odd places and are removed; 49 more.
    EXPECT_EQ(logic.Rows.Size(), 124U);
    EXPECT_EQ(View.ListCaption, L"Application has 124 events");
    std::set<std::uint64_t> records;
    for (std::size_t row = 0; row < logic.Rows.Size(); ++row) {
        records.insert(logic.Rows.Row(row).RecordId);
        EXPECT_EQ(logic.Rows.CellText(row, 4), std::to_wstring(logic.Rows.Row(row).EventId));
    }
    EXPECT_EQ(records.size(), 124U);
}

TEST_F(Loading, LeavingTheComputerDuringALoadKeepsItsSessionOpenUntilTheEnd) {
    AddApplication(150);
    LogMachinery& logic = Start();
    logic.Session.Close();
    logic.Builder.BuildLocalTree(L"TESTPC");
    Pump.OnDispatch = [&] { logic.Session.Close(); };
    logic.Select(L"Windows Logs/Application");
    EXPECT_EQ(logic.Rows.Size(), 150U);
}

TEST_F(Loading, QueryThatCannotBeOpenedShowsTheSystemsTextAndAnEmptyList) {
    AddApplication(3);
    LogMachinery& logic = Start();
    SystemTexts.Texts[5] = L"Access is denied.\r\n";
    Api->FailNextCall(Operation::Query, 5);
    logic.Select(L"Windows Logs/Application");
    ASSERT_EQ(Boxes.Errors.size(), 1U);
    EXPECT_EQ(Boxes.Errors[0].Text, L"\r\nAccess is denied.\r\n");
    EXPECT_EQ(Boxes.Errors[0].Title, L"");
    EXPECT_EQ(View.ListCaption, L"Application has 0 events");
    EXPECT_EQ(NoEventsTexts.size(), 1U);

    Api->FailNextCall(Operation::Query, 0xBEEF);
    logic.Selection.Reload();
    EXPECT_EQ(Boxes.Errors.back().Text, L"Error: 0xbeef");
}

TEST_F(Loading, QueryStatusThatCannotBeReadFetchesNothing) {
    AddApplication(3);
    LogMachinery& logic = Start();
    for (const std::size_t call :
         {std::size_t{1}, std::size_t{3}}) {  // the names; the statuses, after names and probes
        Api->FailCall(Operation::GetQueryInfo, Api->Calls(Operation::GetQueryInfo) + call, 6);
        const std::size_t fetches = Api->Calls(Operation::Next);
        Debug.Lines.clear();
        logic.Select(L"Windows Logs/Application");
        EXPECT_EQ(Api->Calls(Operation::Next), fetches);
        EXPECT_TRUE(Debug.Has(L"List of channels/logs that were queried and their status\n\n"));
        EXPECT_TRUE(Debug.Has(L"EvtGetQueryInfo failed with 6\n"));
        EXPECT_EQ(View.RowCount, 0U);
        EXPECT_TRUE(Boxes.Errors.empty());
    }
}

TEST_F(Loading, FailureInTheMiddleKeepsTheRowsThatAreThere) {
    AddApplication(25);
    LogMachinery& logic = Start();
    Api->FailCall(Operation::Next, 3, 1722);
    logic.Select(L"Windows Logs/Application");
    EXPECT_EQ(View.ListCaption, L"Application has 20 events");
    EXPECT_TRUE(Debug.Has(L"EvtNext failed with 1722\n"));

    Api->FailCall(Operation::Render, Api->Calls(Operation::Render) + 14, 13);  // one call is the size probe
    logic.Selection.Reload();
    EXPECT_EQ(logic.Rows.Size(), 12U);
    EXPECT_TRUE(Debug.Has(L"EvtRender failed with 13\n"));
    EXPECT_EQ(View.SelectedRows, std::vector<std::size_t>{0});

    Api->FailNextCall(Operation::CreateRenderContext, 8);
    logic.Selection.Reload();
    EXPECT_EQ(logic.Rows.Size(), 0U);
    EXPECT_TRUE(Debug.Has(L"EvtCreateRenderContext failed with 8\n"));
}

// Whatever fails, and whenever: the load ends, the window is painted again, and no handle stays open.
TEST_F(Loading, AnyFailureEndsInAConsistentState) {
    AddApplication(13);
    SaveLog(L"other", NumberedEvents(13));
    for (const std::wstring_view node : {L"Windows Logs/Application", L"Saved Logs/other"}) {
        for (const Operation operation :
             {Operation::OpenChannelConfig, Operation::GetChannelConfigProperty, Operation::Query,
              Operation::GetQueryInfo, Operation::Next, Operation::CreateRenderContext, Operation::Render,
              Operation::OpenPublisherMetadata, Operation::FormatMessage, Operation::OpenLog, Operation::GetLogInfo}) {
            for (std::size_t call = 1; call <= 4; ++call) {
                LogMachinery& logic = Start();
                const std::size_t open = Api->OpenHandles();
                Api->FailCall(operation, Api->Calls(operation) + call, 5);
                ASSERT_TRUE(logic.Select(node));
                EXPECT_EQ(Api->OpenHandles(), open);
                EXPECT_EQ(View.Locks, 0);
                EXPECT_EQ(View.RowCount, logic.Rows.Size());
                EXPECT_EQ(View.SelectedRows.size(), logic.Rows.Size() > 0 ? 1U : 0U);
                EXPECT_FALSE(logic.Loader.IsLoading());
                ASSERT_EQ(End(), 0U);
            }
        }
    }
}

TEST_F(Loading, SavedLogIsReadFromItsFileOnThisComputer) {
    AddApplication(1);
    const std::wstring path = SaveLog(L"Old events", NumberedEvents(12));
    Settings.Set(SavedLogsSection, L"Lost", path + L"-no");
    LogMachinery& logic = Start();

    ASSERT_TRUE(logic.Select(L"Saved Logs/Old events"));
    ASSERT_EQ(Api->Queries.size(), 2U);
    EXPECT_EQ(Api->Queries[0].Flags, OldestOfFile);
    EXPECT_EQ(Api->Queries[0].Session, nullptr);
    EXPECT_EQ(Api->Queries[1].Flags, NewestOfFile);
    EXPECT_EQ(Api->Queries[1].Session, logic.Session.LocalSession());
    EXPECT_EQ(Api->Queries[1].Path, path);
    EXPECT_EQ(Api->Calls(Operation::OpenPublisherMetadata), 1U) << "once for the only provider";
    EXPECT_EQ(logic.Rows.Row(0).RecordId, 12U);
    EXPECT_EQ(View.ListCaption, path + L" has 12 events");
    EXPECT_EQ(logic.Loader.View().SavedLogKey, L"Old events");
    EXPECT_EQ(CaptionOf(L"Saved Logs/Old events"), L"Old events");

    ASSERT_TRUE(logic.Select(L"Saved Logs/Lost"));
    ASSERT_EQ(Boxes.Informations.size(), 1U);
    EXPECT_EQ(Boxes.Informations[0].Text, L"File not found. Delete Entry now!");
    EXPECT_EQ(Boxes.Informations[0].Title, L"Information");
    EXPECT_EQ(logic.Tree.FindByPath(L"Saved Logs/Lost"), NodeId::None);
    EXPECT_EQ(logic.Rows.Size(), 12U) << "the list stays as it was";
}

TEST_F(Loading, StoredFilterRunsInsteadOfTheChannelButNotOnReload) {
    ASSERT_TRUE(Files.AddLog(L"localhost", L"Contoso/Main", NumberedEvents(5)));
    Settings.Set(L"FilterTESTPC", L"Contoso#Main", L"<QueryList>stored</QueryList>");
    LogMachinery& logic = Start();
    ASSERT_TRUE(logic.Select(L"Application and Service Logs/Contoso/Main"));
    ASSERT_EQ(Api->Queries.size(), 1U);
    EXPECT_EQ(Api->Queries[0].Query, L"<QueryList>stored</QueryList>");
    EXPECT_EQ(Api->Queries[0].Path, std::nullopt);
    EXPECT_EQ(Api->Queries[0].Flags, NewestOfChannel);
    logic.Selection.Reload();
    EXPECT_EQ(Api->Queries.back().Path, L"Contoso/Main");
    EXPECT_EQ(logic.Rows.Size(), 5U);
    logic.Loader.SetVisibleColumns(VisibleColumns(1));
    logic.Selection.RepeatLoad();
    EXPECT_EQ(Api->Queries.back().Path, L"Contoso/Main") << "the same view with other columns";
    EXPECT_EQ(logic.Rows.CellText(0, 1), L"");
}

TEST_F(Loading, AChannelWhoseStoredFilterCannotBeHadShowsNothing) {
    AddApplication(3);
    ASSERT_TRUE(Files.AddLog(L"localhost", L"System", NumberedEvents(2)));
    Settings.Set(L"FilterTESTPC", L"System", L"gone.xml");
    Filters.Broken = L"gone.xml";
    LogMachinery& logic = Start();
    logic.Select(L"Windows Logs/Application");
    const std::size_t queries = Api->Queries.size();
    ASSERT_TRUE(logic.Select(L"Windows Logs/System"));
    EXPECT_EQ(Api->Queries.size(), queries);
    EXPECT_EQ(logic.Rows.Size(), 0U);
    EXPECT_EQ(View.ListCaption, L"System has 0 events");
    EXPECT_EQ(NoEventsTexts.size(), 1U);
    logic.Selection.Reload();
    EXPECT_EQ(logic.Rows.Size(), 2U) << "the node is there, and the channel can still be shown without its filter";
}

TEST_F(Loading, ExtrasAskForSeveralChannelsAtOnce) {
    AddApplication(2);
    ASSERT_TRUE(Files.AddLog(L"localhost", L"A&B", NumberedEvents(1)));
    ASSERT_TRUE(Files.AddLog(L"localhost", L"Contoso-App-Core/Operational", NumberedEvents(1)));
    LogMachinery& logic = Start();
    ASSERT_TRUE(logic.Select(L"Extras/Merge All Channels"));
    EXPECT_EQ(Api->Queries.back().Query,
              L"<QueryList>  <Query Id=\"0\" Path=\"A&amp;B\">  <Select Path=\"A&amp;B\">*</Select>"
              L"  <Select Path=\"Application\">*</Select>"
              L"  <Select Path=\"Contoso-App-Core/Operational\">*</Select>  </Query></QueryList>");
    EXPECT_EQ(Api->Queries.back().Flags, NewestOfChannel);
    EXPECT_EQ(View.RowCount, logic.Rows.Size());

    ASSERT_TRUE(logic.Select(L"Extras/Administrative Events"));
    const std::wstring query = Api->Queries.back().Query.value_or(L"");
    EXPECT_NE(query.find(L"<Select Path=\"Application\">*[System[(Level=1 or Level=2 or Level=3)]]</Select>"),
              std::wstring::npos);
    EXPECT_EQ(query.find(L"Operational"), std::wstring::npos);
}

TEST_F(Loading, ExtrasAndStoredFiltersShowTheRowsThatTheySelect) {
    std::vector<TestEvent> events = NumberedEvents(3);
    events[0].Time = FirstTestTime;
    events[1].Time = FirstTestTime + 20;
    events[2].Time = FirstTestTime + 40;
    ASSERT_TRUE(Files.AddLog(L"localhost", L"Application", events));
    for (std::size_t index = 0; index < events.size(); ++index) {
        events[index].Id = static_cast<std::uint16_t>(index + 11);
        events[index].Time += 10;
        events[index].Level = index == 1 ? 2 : 4;
    }
    ASSERT_TRUE(Files.AddLog(L"localhost", L"System", events));
    LogMachinery& logic = Start();
    ASSERT_TRUE(logic.Select(L"Extras/Merge All Channels"));
    EXPECT_EQ(logic.ColumnTexts(Column::EventId), (std::vector<std::wstring>{L"13", L"3", L"12", L"2", L"11", L"1"}));
    EXPECT_EQ(View.ListCaption, L"Merge All Channels has 6 events");
    EXPECT_EQ(View.SelectedRows, std::vector<std::size_t>{0});

    ASSERT_TRUE(logic.Select(L"Extras/Administrative Events"));
    EXPECT_EQ(logic.ColumnTexts(Column::EventId), std::vector<std::wstring>{L"12"});

    const std::wstring filter =
        L"<QueryList><Query Id=\"0\" Path=\"System\"><Select Path=\"System\">"
        L"*[System[(EventID&gt;=12)]]</Select></Query></QueryList>";
    Settings.Set(L"FilterTESTPC", L"System", filter);
    ASSERT_TRUE(logic.Select(L"Windows Logs/System"));
    EXPECT_EQ(logic.ColumnTexts(Column::EventId), (std::vector<std::wstring>{L"13", L"12"}));
    EXPECT_TRUE(Boxes.Errors.empty());
}

TEST_F(Loading, SelectionFollowsTheComputerAndNeverShowsOneUnderAnothersName) {
    AddApplication(3);
    ASSERT_TRUE(Files.AddLog(L"REMOTE", L"System", NumberedEvents(8)));
    LogMachinery& logic = Start();
    const NodeId remote = logic.Builder.BuildRemoteTree(L"REMOTE", std::nullopt);
    ASSERT_NE(remote, NodeId::None);
    const NodeId system = logic.Tree.FindChildByCaption(logic.Builder.NodesOf(1)->WindowsLogs, L"System (8)");
    ASSERT_NE(system, NodeId::None);

    logic.Select(L"Windows Logs/Application");
    const std::size_t sessions = Api->Sessions.size();
    logic.Select(L"Windows Logs/Application");
    EXPECT_EQ(Api->Sessions.size(), sessions) << "the same computer again needs no new session";
    logic.Selection.NodeSelected(system);
    EXPECT_EQ(Api->Sessions.back().Server, L"REMOTE");
    EXPECT_EQ(logic.Rows.Size(), 8U);
    logic.Selection.NodeSelected(logic.Tree.FindByPath(L"Windows Logs"));
    EXPECT_EQ(logic.Rows.Size(), 0U);
    EXPECT_EQ(View.ListCaption, L"TESTPC");

    const std::size_t queries = Api->Queries.size();
    Api->FailNextCall(Operation::OpenSession, 1722);
    logic.Selection.NodeSelected(system);
    EXPECT_EQ(Api->Queries.size(), queries) << "without a session this computer would answer for the other one";
    ASSERT_EQ(Boxes.Errors.size(), 2U);
    EXPECT_EQ(Boxes.Errors[0].Title, L"Information");
    EXPECT_EQ(logic.Rows.Size(), 0U);
    EXPECT_EQ(View.ListCaption, L"System has 0 events");
}

// Long logs fit into memory: 320 bytes a row with the default columns, texts included.
TEST_F(Loading, RowsStayWithinTheirBudget) {
    std::vector<TestEvent> events = NumberedEvents(20000);
    for (std::size_t index = 0; index < events.size(); ++index) {
        events[index].Id = static_cast<std::uint16_t>(index);
        events[index].Provider = L"Provider-" + std::to_wstring(index % 50);
        events[index].User = L"S-1-5-21-1-2-3-" + std::to_wstring(index % 20);
    }
    ASSERT_TRUE(Files.AddLog(L"localhost", L"Application", events));
    LogMachinery& logic = Start();
    logic.Select(L"Windows Logs/Application");
    ASSERT_EQ(logic.Rows.Size(), 20000U);
    RecordProperty("BytesPerRow", static_cast<int>(logic.Rows.MemoryUsed() / 20000));
    EXPECT_LE(logic.Rows.MemoryUsed() / 20000, 320U);
}

}  // namespace
}  // namespace corvina::test
