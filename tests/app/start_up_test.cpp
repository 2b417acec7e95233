// The start of the program, its order and what it does when parts of the system refuse, and the close.
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/application_fixture.h"
#include "app/command_ids.h"
#include "app/node_path.h"

namespace corvina {
namespace {

using test::ApplicationTest;
using test::Operation;

class StartUpTest : public ApplicationTest {};

TEST_F(StartUpTest, AFreshFolderIsSetUpInOrder) {
    settings_.FileExists = false;
    app_->Create();
    const std::vector<std::wstring> expected = {L"CreateFolders C:\\Corvina\\Settings",
                                                L"CreateFolders C:\\Corvina\\XML",
                                                L"CreateFolders C:\\Corvina\\Temp",
                                                L"CreateFolders C:\\Corvina\\Update",
                                                L"Version",
                                                L"OpenSettings C:\\Corvina\\Settings\\inifile.ini",
                                                L"read CurrTheme",
                                                L"read Language",
                                                L"write Language",
                                                L"read Language",
                                                L"read nVSplitPos",
                                                L"read nHSplitPos",
                                                L"read Columns",
                                                L"read ColumnsWidth",
                                                L"InitializeCom",
                                                L"CreateToolTip",
                                                L"read GridLines",
                                                L"read autoupdates",
                                                L"SetSplitters",
                                                L"CreateControls",
                                                L"SetListColumns",
                                                L"read Folder",
                                                L"OpenEventLog",
                                                L"section AddedFiles",
                                                L"OpenToken",
                                                L"SetTexts",
                                                L"read ColorListView",
                                                L"ApplyTheme",
                                                L"read MainWindowIsMaximized",
                                                L"read MainWindowHeigth",
                                                L"read MainWindowWidth",
                                                L"read MainWindowTop",
                                                L"read MainWindowLeft",
                                                L"MoveTo",
                                                L"SetGridLines",
                                                L"SetVersionText",
                                                L"Repaint",
                                                L"Focus",
                                                L"read Select"};
    EXPECT_EQ(journal_, expected);
    EXPECT_EQ(window_.Place.Rectangle.Width, 800);
    EXPECT_EQ(window_.Place.Rectangle.Left, 10);
    EXPECT_EQ(window_.Vertical, 250);
    EXPECT_EQ(window_.Horizontal, 250);
    EXPECT_EQ(window_.Columns.size(), 6U);
    EXPECT_EQ(window_.Title, L"Event Viewer - TESTPC");
    EXPECT_EQ(window_.VersionText, L"Version: 1.0.0 (64-bit)");
    EXPECT_EQ(window_.Focused, FocusStation::Tree);
    EXPECT_EQ(factory_.BaseFolder, L"C:\\Corvina");
    EXPECT_EQ(app_->Colors().WindowFill, LightPalette.WindowFill);
    EXPECT_EQ(token_.Enabled.size(), 5U);
    EXPECT_EQ(debug_.Lines.back(), L"Corvina is ready\n");
    EXPECT_EQ(settings_.Writes, std::vector<std::wstring>{L"Language=1"});
}

TEST_F(StartUpTest, TheStoredLookReturns) {
    system_.Folders = {L"C:\\Corvina\\Settings", L"C:\\Corvina\\XML", L"C:\\Corvina\\Temp", L"C:\\Corvina\\Update"};
    settings_.Set(L"Options", L"Language", L"0");
    settings_.Set(L"Options", L"CurrTheme", L"2");
    settings_.Set(L"Options", L"GridLines", L"1");
    settings_.Set(L"Options", L"ColorListView", L"1");
    settings_.Set(L"Options", L"nVSplitPos", L"99");
    settings_.Set(L"Corvina", L"Columns", L"01");
    settings_.Set(L"Corvina", L"ColumnsWidth", L"1,77,");
    settings_.Set(L"Corvina", L"MainWindowIsMaximized", L"1.0");
    settings_.Set(L"EventStore", L"Folder", L"D:\\Store");
    app_->Create();
    EXPECT_EQ(journal_.front(), L"Version");  // no folder had to be created
    EXPECT_EQ(app_->CurrentLanguage().Index(), i18n::German);
    ASSERT_EQ(window_.Columns.size(), 1U);
    EXPECT_EQ(window_.Columns[0].Width, 77);
    EXPECT_EQ(window_.Columns[0].Header, app_->CurrentLanguage().Text(128));
    EXPECT_TRUE(window_.GridLines);
    EXPECT_TRUE(app_->ColorsRowsByLevel());
    EXPECT_EQ(app_->Colors().WindowFill, DarkPalette.WindowFill);  // the system cannot be dark: 2 is taken as 1
    EXPECT_EQ(window_.Vertical, 99);
    EXPECT_EQ(window_.Place.State, WindowState::Maximized);
    EXPECT_EQ(factory_.StoreFolder, L"D:\\Store");
    EXPECT_TRUE(settings_.Writes.empty());
}

TEST_F(StartUpTest, TheLanguageComesFromTheSettingsElseFromTheSystem) {
    const std::vector<std::tuple<std::wstring, std::uint16_t, int, std::wstring>> cases = {
        {L"-1", 2055, i18n::German, L"0"}, {L"", 1031, i18n::German, L"0"},     {L"", 1033, i18n::English, L"1"},
        {L"1", 1031, i18n::English, L"1"}, {L"1x", 1031, i18n::English, L"1x"}, {L"x", 1033, i18n::German, L"x"}};
    for (const auto& [stored, system, language, written] : cases) {
        settings_.Set(L"Options", L"Language", stored);
        system_.Language = system;
        app_ = std::make_unique<Application>(ports_, Views{window_, tree_, load_, details_, eventWindow_});
        app_->Create();
        EXPECT_EQ(app_->CurrentLanguage().Index(), language) << testing::PrintToString(stored);
        EXPECT_EQ(settings_.Value(L"Options", L"Language"), written) << testing::PrintToString(stored);
    }
}

TEST_F(StartUpTest, SettingsOutOfRangeDoNoHarm) {
    AddLog(L"Application", 3);
    for (const wchar_t* number : {L"-2", L"24", L"99", L"2147483647", L"-2147483648", L"99999999999999999999", L"?"}) {
        for (const wchar_t* key : {L"Language", L"CurrTheme", L"nVSplitPos", L"nHSplitPos", L"GridLines"}) {
            settings_.Set(L"Options", key, number);
        }
        for (const wchar_t* key : {L"MainWindowLeft", L"MainWindowTop", L"MainWindowWidth", L"MainWindowHeigth",
                                   L"MainWindowIsMaximized", L"Columns", L"ColumnsWidth"}) {
            settings_.Set(L"Corvina", key, number);
        }
        app_ = std::make_unique<Application>(ports_, Views{window_, tree_, load_, details_, eventWindow_});
        app_->Create();
        Select(NodePathInLanguage(L"Windows Logs/Application", app_->CurrentLanguage()));
        EXPECT_EQ(load_.RowCount, 3U);
        EXPECT_FALSE(app_->CurrentLanguage().Text(128).empty()) << testing::PrintToString(number);
        EXPECT_NE(window_.Title.find(L" - TESTPC"), std::wstring::npos) << testing::PrintToString(number);
        EXPECT_FALSE(details_.Left.empty());
        app_->Command(CORVINA_ID_OPTIONS);
        EXPECT_LT(window_.OfferedOptions.Now.LanguageEntry, window_.OfferedOptions.Languages.size());
        EXPECT_LT(static_cast<std::size_t>(window_.OfferedOptions.Now.DisplayMode),
                  window_.OfferedOptions.DisplayModes.size());
    }
}

TEST_F(StartUpTest, AMediumThatCannotBeWrittenKeepsTheChosenLanguage) {
    settings_.FileExists = false;
    settings_.IsReadOnly = true;
    app_->Create();
    EXPECT_EQ(app_->CurrentLanguage().Index(), i18n::English);
}

TEST_F(StartUpTest, WithoutTheTokenTheRestIsLeftOut) {
    AddLog(L"Application", 3);
    settings_.Set(L"EventStore", L"Select", L"Windows Logs/Application");
    token_.CanOpen = false;
    app_->Create();
    EXPECT_EQ(std::count(journal_.begin(), journal_.end(), L"SetTexts"), 0);
    EXPECT_EQ(std::count(journal_.begin(), journal_.end(), L"MoveTo"), 0);
    EXPECT_TRUE(token_.Enabled.empty());
    EXPECT_EQ(load_.RowCount, 3U);
    EXPECT_EQ(debug_.Lines.back(), L"Corvina is ready\n");
}

TEST_F(StartUpTest, TheNamedNodeIsSelectedAndLoaded) {
    AddLog(L"Application", 2);
    AddLog(L"System", 5);
    settings_.Set(L"EventStore", L"Select", L"Windows Logs/System");
    app_->Create();
    EXPECT_EQ(tree_.Selected, Node(L"Windows Logs/System"));
    EXPECT_EQ(load_.RowCount, 5U);
    EXPECT_EQ(load_.ListCaption, L"System has 5 events");
    EXPECT_EQ(debug_.Lines.back(), L"Corvina is ready\n");
}

TEST_F(StartUpTest, NodesAreNamedInEnglishInEveryLanguage) {
    AddLog(L"System", 5);
    settings_.Set(L"Options", L"Language", L"0");
    settings_.Set(L"EventStore", L"Select", L"Windows Logs/System");
    app_->Create();
    EXPECT_EQ(tree_.Selected, Node(L"Windows-Protokolle/System"));
    EXPECT_EQ(load_.RowCount, 5U);
    const i18n::Language german(i18n::German);
    EXPECT_NE(Node(NodePathInLanguage(L"Extras/Merge All Channels", german)), NodeId::None);
    EXPECT_NE(Node(NodePathInLanguage(L"Application and Service Logs/Microsoft/Windows", german)), NodeId::None);
}

TEST_F(StartUpTest, AnUnknownNodeIsOnlyNoted) {
    settings_.Set(L"EventStore", L"Select", L"Windows Logs/Nothing");
    app_->Create();
    EXPECT_TRUE(debug_.Has(L"No node Windows Logs/Nothing to select\n"));
    EXPECT_EQ(app_->Tree().Selected(), app_->Tree().Roots().front());
    EXPECT_EQ(debug_.Lines.back(), L"Corvina is ready\n");
}

TEST_F(StartUpTest, AnEventLogThatCannotBeOpenedLeavesAWindowWithARoot) {
    for (const Operation operation : {Operation::OpenSession, Operation::OpenChannelEnum}) {
        prompts_.Errors.clear();
        errors_.Texts[1722] = L"The RPC server is unavailable.";
        factory_.OnOpen = [&](test::FailingEventLog& api) { api.FailAlways(operation, 1722); };
        app_ = std::make_unique<Application>(ports_, Views{window_, tree_, load_, details_, eventWindow_});
        app_->Create();
        ASSERT_EQ(app_->Tree().Roots().size(), 1U);
        EXPECT_EQ(app_->Tree().Find(app_->Tree().Roots().front())->Caption, L"TESTPC");
        ASSERT_FALSE(prompts_.Errors.empty());
        EXPECT_NE(prompts_.Errors.front().Text.find(L"The RPC server is unavailable."), std::wstring::npos);
        EXPECT_EQ(window_.Title, L"Event Viewer - TESTPC");
        EXPECT_EQ(debug_.Lines.back(), L"Corvina is ready\n");
        EXPECT_EQ(load_.RowCount, 0U);
        app_->Close();
        EXPECT_EQ(factory_.Api->OpenHandles(), 0U);
    }
}

TEST_F(StartUpTest, EarlyCallsOfTheWindowFindNothing) {
    EXPECT_TRUE(app_->CellText(0, 0).empty());
    EXPECT_EQ(app_->RowImage(7), 0U);
    app_->RowSelectionChanged();
    app_->HeaderClicked(0);
    app_->TreeSelectionChanged(NodeId::None);
    app_->Command(CORVINA_ID_OPEN_SAVED_LOG);
    EXPECT_FALSE(app_->Menu(CORVINA_ID_MENU_TREE).empty());
    EXPECT_FALSE(Release(0x74));
    app_->Close();
    EXPECT_TRUE(settings_.Writes.empty());
}

// A message box of the start has a message loop of its own, in which the user may close the window below it.
TEST_F(StartUpTest, ACloseInTheMiddleOfTheStartKeepsTheSavedGeometry) {
    settings_.Set(L"Corvina", L"MainWindowLeft", L"77");
    factory_.OnOpen = [this](test::FailingEventLog&) { app_->Close(); };
    app_->Create();
    EXPECT_EQ(settings_.Value(L"Corvina", L"MainWindowLeft"), L"77");
    EXPECT_EQ(std::count(settings_.Writes.begin(), settings_.Writes.end(), L"nHSplitPos=250"), 0);
    app_->Close();
    EXPECT_EQ(std::count(settings_.Writes.begin(), settings_.Writes.end(), L"nHSplitPos=250"), 1);
}

TEST_F(StartUpTest, CloseEndsTheSessionAndSaves) {
    AddLog(L"Application", 1);
    app_->Create();
    Select(L"Windows Logs/Application");
    window_.Columns[1].Width = 333;
    window_.Horizontal = 111;
    settings_.Writes.clear();
    app_->Close();
    EXPECT_EQ(factory_.Api->OpenHandles(), 0U);
    EXPECT_EQ(settings_.Writes.front().substr(0, 21), L"ColumnsWidth=200,333,");
    EXPECT_EQ(settings_.Writes.back(), L"nHSplitPos=111");
}

}  // namespace
}  // namespace corvina
