// The running program: selecting, sorting, removing, saved logs, columns, menus and keys, also in the middle of a load.
#include "app/application.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/application_fixture.h"
#include "app/channel_state.h"
#include "app/command_ids.h"
#include "eventlog/event_columns.h"

namespace corvina {
namespace {

using test::Operation;

constexpr std::uint32_t F5Key = 0x74;
constexpr std::uint32_t TabKey = 0x09;
constexpr std::uint32_t DeleteKey = 0x2E;
constexpr std::size_t EventIdPosition = 4;

class RunningApplicationTest : public test::ApplicationTest {
  protected:
    void Start(std::size_t applicationEvents, std::size_t systemEvents) {
        AddLog(L"Application", applicationEvents);
        AddLog(L"System", systemEvents);
        app_->Create();
    }
    // A saved log in the test's folder; its path as the file chooser gives it.
    std::wstring SaveLog(const std::string& name, std::size_t count) {
        const std::filesystem::path path = folder_.Path() / name;
        EXPECT_EQ(test::WriteLog(path, test::NumberedEvents(count)), 0U);
        system_.Files.push_back(path.wstring());
        return path.wstring();
    }
    void OpenSavedLog(const std::wstring& path) {
        prompts_.ChosenFile = path;
        app_->Command(CORVINA_ID_OPEN_SAVED_LOG);
    }
    std::wstring TreeMenuText(std::uint32_t command) const {
        for (const MenuEntry& entry : app_->Menu(CORVINA_ID_MENU_TREE)) {
            if (entry.Command == command) {
                return entry.Text;
            }
        }
        return L"(missing)";
    }
};

TEST_F(RunningApplicationTest, ASelectedLogFillsListAndDetails) {
    Start(3, 0);
    Select(L"Windows Logs/Application");
    EXPECT_EQ(CellTexts(EventIdPosition), (std::vector<std::wstring>{L"3", L"2", L"1"}));
    EXPECT_EQ(load_.ListCaption, L"Application has 3 events");
    EXPECT_NE(details_.Xml.find(L"<EventRecordID>3</EventRecordID>"), std::wstring::npos);
    window_.Selection = {2};
    app_->RowSelectionChanged();
    EXPECT_NE(details_.Xml.find(L"<EventRecordID>1</EventRecordID>"), std::wstring::npos);
    EXPECT_TRUE(app_->CellText(3, 0).empty());
    EXPECT_TRUE(app_->CellText(0, 6).empty());

    Select(L"Windows Logs/System");
    EXPECT_EQ(load_.RowCount, 0U);
    EXPECT_EQ(details_.Description, L"No events in this view.");
    EXPECT_EQ(load_.Locks, 0);
    EXPECT_FALSE(load_.WasLockedTwice);
}

TEST_F(RunningApplicationTest, HeaderClicksSortWithOneSharedDirection) {
    Start(3, 0);
    Select(L"Windows Logs/Application");
    const int counted = load_.RowCountsSet;
    app_->HeaderClicked(EventIdPosition);
    EXPECT_EQ(CellTexts(EventIdPosition), (std::vector<std::wstring>{L"3", L"2", L"1"}));
    app_->HeaderClicked(1);  // the date, ascending now
    EXPECT_EQ(CellTexts(EventIdPosition), (std::vector<std::wstring>{L"1", L"2", L"3"}));
    EXPECT_EQ(load_.RowCountsSet, counted + 2);
    app_->HeaderClicked(6);  // there is no such column
    EXPECT_EQ(load_.RowCountsSet, counted + 2);
}

TEST_F(RunningApplicationTest, SelectedRowsAreRemovedFromTheListOnly) {
    Start(5, 0);
    Select(L"Windows Logs/Application");
    window_.Selection = {};
    app_->Command(CORVINA_ID_REMOVE_ROWS);  // greyed without a selection
    EXPECT_EQ(load_.RowCount, 5U);
    window_.Selection = {0, 2, 4};
    app_->Command(CORVINA_ID_REMOVE_ROWS);
    EXPECT_EQ(CellTexts(EventIdPosition), (std::vector<std::wstring>{L"4", L"2"}));
    EXPECT_NE(details_.Xml.find(L"<EventRecordID>4</EventRecordID>"), std::wstring::npos);
    window_.Selection = {1};
    app_->Command(CORVINA_ID_REMOVE_ROWS);
    EXPECT_EQ(window_.Selection, std::vector<std::size_t>{0}) << "the last row went, so the one before it is next";
    EXPECT_TRUE(Release(F5Key));
    EXPECT_EQ(load_.RowCount, 5U);
}

TEST_F(RunningApplicationTest, SavedLogsGetANameOfTheirOwnAndAreRemembered) {
    Start(1, 0);
    std::filesystem::create_directories(folder_.Path() / "other");
    const std::wstring first = SaveLog("Old=logs.evtx", 4);
    const std::wstring second = SaveLog("other/OLD_LOGS.evtx", 2);
    OpenSavedLog(first);
    EXPECT_EQ(prompts_.Filter, L"Event Log (*.evtx)|*.evtx|All Files(*.*)|* .*||");
    EXPECT_EQ(settings_.Value(L"AddedFiles", L"Old_logs.evtx"), first);
    EXPECT_EQ(load_.RowCount, 4U);
    EXPECT_EQ(tree_.Selected, Node(L"Saved Logs/Old_logs.evtx"));
    OpenSavedLog(second);
    EXPECT_EQ(settings_.Value(L"AddedFiles", L"OLD_LOGS 2.evtx"), second);
    EXPECT_EQ(load_.RowCount, 2U);
    OpenSavedLog(first);  // known already
    EXPECT_EQ(settings_.ReadSection(L"AddedFiles").size(), 2U);
    EXPECT_EQ(tree_.Selected, Node(L"Saved Logs/Old_logs.evtx"));
    prompts_.ChosenFile.reset();
    app_->Command(CORVINA_ID_OPEN_SAVED_LOG);
    EXPECT_EQ(settings_.ReadSection(L"AddedFiles").size(), 2U);
}

TEST_F(RunningApplicationTest, ASavedLogIsRemovedAfterAQuestion) {
    Start(1, 0);
    OpenSavedLog(SaveLog("saved.evtx", 1));
    const NodeId node = tree_.Selected;
    EXPECT_EQ(TreeMenuText(CORVINA_ID_CLEAR_LOG), L"Remove");
    prompts_.Answer = false;
    app_->Command(CORVINA_ID_CLEAR_LOG);
    ASSERT_EQ(prompts_.Questions.size(), 1U);
    EXPECT_EQ(prompts_.Questions[0].Text, L"Remove item?");
    EXPECT_NE(app_->Tree().Find(node), nullptr);
    prompts_.Answer = true;
    app_->Command(CORVINA_ID_REMOVE);
    EXPECT_EQ(app_->Tree().Find(node), nullptr);
    EXPECT_EQ(settings_.Value(L"AddedFiles", L"saved.evtx"), L"(missing)");
    EXPECT_EQ(app_->Tree().Selected(), Node(L"Saved Logs"));
    app_->Command(CORVINA_ID_REMOVE);  // nothing to remove is selected now
    EXPECT_EQ(prompts_.Questions.size(), 2U);
}

TEST_F(RunningApplicationTest, ASavedLogWithoutItsFileIsForgotten) {
    settings_.Set(L"AddedFiles", L"gone.evtx", L"C:\\gone.evtx");
    Start(1, 0);
    Select(L"Saved Logs/gone.evtx");
    ASSERT_EQ(prompts_.Informations.size(), 1U);
    EXPECT_EQ(prompts_.Informations[0].Text, L"File not found. Delete Entry now!");
    EXPECT_EQ(Node(L"Saved Logs/gone.evtx"), NodeId::None);
    EXPECT_EQ(settings_.Value(L"AddedFiles", L"gone.evtx"), L"(missing)");
}

TEST_F(RunningApplicationTest, ChosenColumnsAreShownAndTheViewIsLoadedAgain) {
    Start(2, 0);
    Select(L"Windows Logs/Application");
    window_.Columns[0].Width = 91;
    const std::size_t queries = factory_.Api->Calls(Operation::Query);
    app_->Command(CORVINA_ID_COLUMNS);  // cancelled
    EXPECT_EQ(factory_.Api->Calls(Operation::Query), queries);
    EXPECT_EQ(window_.OfferedColumns.size(), ColumnCount);
    std::vector<bool> chosen = window_.OfferedVisible;
    EXPECT_EQ(std::count(chosen.begin(), chosen.end(), true), 6);

    chosen[1] = false;
    chosen[10] = chosen[14] = true;
    window_.ChosenColumns = chosen;
    app_->Command(CORVINA_ID_COLUMNS);
    ASSERT_EQ(window_.Columns.size(), 7U);
    EXPECT_EQ(window_.Columns[0].Width, 91);
    EXPECT_EQ(window_.Columns[5].Header, L"Process ID");
    EXPECT_EQ(CellTexts(5), (std::vector<std::wstring>{L"100", L"100"}));
    EXPECT_EQ(CellTexts(6), (std::vector<std::wstring>{L"2", L"1"}));
    app_->Close();
    EXPECT_EQ(settings_.Value(L"Corvina", L"Columns"), L"101111000010001000");
    EXPECT_EQ(settings_.Value(L"Corvina", L"ColumnsWidth").substr(0, 7), L"91,200,");
}

TEST_F(RunningApplicationTest, TheProtocolEntryReadsTheChannelWhenTheMenuOpens) {
    Start(1, 1);
    EXPECT_EQ(app_->MenuOfNode(Node(L"Windows Logs/System")), CORVINA_ID_MENU_TREE);
    Select(L"Windows Logs/System");
    EXPECT_EQ(TreeMenuText(CORVINA_ID_SWITCH_CHANNEL), L"Disable Protocol");
    for (const Operation operation : {Operation::OpenChannelConfig, Operation::GetChannelConfigProperty}) {
        factory_.Api->FailNextCall(operation, 5);
        EXPECT_EQ(TreeMenuText(CORVINA_ID_SWITCH_CHANNEL), L"Enable Protocol");
    }
    EXPECT_EQ(TreeMenuText(CORVINA_ID_SWITCH_CHANNEL), L"Disable Protocol");
}

TEST_F(RunningApplicationTest, ASwitchedOffChannelIsNotInTheTreeButKnownToBeOff) {
    ASSERT_TRUE(store_.SetChannelsIni(L"localhost", "[System]\nEnabled=0\n"));
    Start(1, 1);
    EXPECT_EQ(Node(L"Windows Logs/System"), NodeId::None);
    const SystemErrorReport report(errors_, prompts_);
    const i18n::Language language;
    ChannelLists channels;
    EventLogSession session(*factory_.Api, report, debug_, language, channels);
    EXPECT_FALSE(IsChannelEnabled(session, L"Application"));  // not connected yet
    ASSERT_TRUE(session.ConnectToComputer(L"TESTPC", 0, std::nullopt, [](const std::wstring&) {}));
    EXPECT_TRUE(IsChannelEnabled(session, L"Application"));
    EXPECT_FALSE(IsChannelEnabled(session, L"System"));
}

TEST_F(RunningApplicationTest, KeysReloadMoveTheFocusAndLeaveGreyedCommandsAlone) {
    Start(2, 0);
    Select(L"Windows Logs/Application");
    EXPECT_TRUE(Release(TabKey));
    EXPECT_EQ(window_.Focused, FocusStation::List);
    AddLog(L"Application", 7);
    EXPECT_TRUE(Release(F5Key));
    EXPECT_EQ(load_.RowCount, 7U);
    EXPECT_EQ(app_->Tree().Find(Node(L"Windows Logs/Application"))->Caption, L"Application (7)");
    EXPECT_TRUE(Release(DeleteKey));
    EXPECT_TRUE(Release('E', true));
    EXPECT_TRUE(prompts_.Questions.empty());
    EXPECT_EQ(factory_.Api->Calls(Operation::ClearLog), 0U);
    EXPECT_FALSE(Release('Q', true));
}

// What a user may do while a long load lets messages through.
TEST_F(RunningApplicationTest, NothingDoneInTheMiddleOfALoadConfusesIt) {
    Start(350, 120);
    const std::wstring saved = SaveLog("saved.evtx", 10);
    std::vector<bool> fewer(ColumnCount, false);
    fewer[4] = true;
    const std::vector<std::pair<std::function<void()>, std::size_t>> actions = {
        {[&] { app_->TreeSelectionChanged(Node(L"Windows Logs/System")); }, 120},
        {[&] { app_->HeaderClicked(EventIdPosition); }, 350},
        {[&] { Release(F5Key); }, 350},
        {[&] { OpenSavedLog(saved); }, 10},
        {[&] {
             app_->Command(CORVINA_ID_CLEAR_LOG);  // removes a saved log, none here
             app_->Menu(CORVINA_ID_MENU_TREE);
             app_->RowSelectionChanged();
         },
         350},
        {[&] {
             window_.ChosenColumns = fewer;
             app_->Command(CORVINA_ID_COLUMNS);
             app_->CellText(0, 0);
         },
         350},
    };
    for (const auto& [action, rows] : actions) {
        pump_.OnDispatch = [&toDo = action, done = false]() mutable {
            if (!done) {
                done = true;
                toDo();
            }
        };
        Select(L"Windows Logs/Application");
        EXPECT_EQ(load_.RowCount, rows);
        EXPECT_EQ(load_.Locks, 0);
        EXPECT_FALSE(load_.WasLockedTwice);
        EXPECT_TRUE(prompts_.Errors.empty());
    }
    pump_.OnDispatch = [&] { app_->Close(); };
    Select(L"Windows Logs/Application");
    pump_.OnDispatch = nullptr;
    app_->Close();
    EXPECT_EQ(factory_.Api->OpenHandles(), 0U);
    EXPECT_EQ(settings_.Value(L"Corvina", L"Columns"), L"000010000000000000");
}

}  // namespace
}  // namespace corvina
