// Settings of the main window: numbers in texts, the folders, the values and what is written at close.
#include "app/settings.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/program_folders.h"
#include "base/number_text.h"
#include "support/doubles_settings.h"
#include "support/recording_main_window.h"

namespace corvina {
namespace {

using test::MemorySettings;
using test::RecordingMainWindow;

TEST(NumberText, IntegersAreTheLeadingDigitsOfAnyText) {
    const std::vector<std::pair<std::wstring, int>> cases = {{L"250", 250},
                                                             {L" \t42px", 42},
                                                             {L"-7", -7},
                                                             {L"+7", 7},
                                                             {L"", 0},
                                                             {L"abc", 0},
                                                             {L"- 7", 0},
                                                             {L"1.9", 1},
                                                             {L"--1", 0},
                                                             {L"0x10", 0},
                                                             {L"\x0661", 0},
                                                             {L"2147483647", INT_MAX},
                                                             {L"2147483648", INT_MAX},
                                                             {L"-2147483648", INT_MIN},
                                                             {L"-99999999999999999999999999999999999999", INT_MIN},
                                                             {L"99999999999999999999999999999999999999", INT_MAX}};
    for (const auto& [text, number] : cases) {
        EXPECT_EQ(IntegerFromText(text), number) << testing::PrintToString(text);
    }
}

TEST(NumberText, FloatingNumbersAreCutTowardsZero) {
    const std::vector<std::pair<std::wstring, int>> cases = {
        {L"1.0", 1},          {L"1.999", 1},  {L"-1.999", -1},    {L".5", 0},
        {L"5.", 5},           {L"2e2", 200},  {L"2e", 2},         {L"2e+1x", 20},
        {L"25E-1", 2},        {L"e5", 0},     {L".", 0},          {L"-", 0},
        {L"1,5", 1},          {L"nan", 0},    {L"inf", 0},        {L"1e999", INT_MAX},
        {L"-1e999", INT_MIN}, {L"1e-999", 0}, {L"1e10", INT_MAX}, {L"-1e10", INT_MIN},
        {L"  3.7 ", 3},       {L"", 0}};
    for (const auto& [text, number] : cases) {
        EXPECT_EQ(IntegerFromFloatingText(text), number) << testing::PrintToString(text);
    }
}

TEST(ProgramFolders, StandBesideTheExecutable) {
    EXPECT_EQ(BaseFolderOf(L"C:\\Tools\\Corvina\\Corvina.exe"), L"C:\\Tools\\Corvina");
    EXPECT_EQ(BaseFolderOf(L"Z:\\a/b/Corvina.exe"), L"Z:\\a/b");
    EXPECT_EQ(BaseFolderOf(L"Corvina.exe"), L"Corvina.exe");
    const ProgramFolders folders(L"C:\\100%s\\Corvina.exe");
    EXPECT_EQ(folders.Settings(), L"C:\\100%s\\Settings");
    EXPECT_EQ(folders.SettingsFile(), L"C:\\100%s\\Settings\\inifile.ini");
    EXPECT_EQ(folders.Xml(), L"C:\\100%s\\XML");
    EXPECT_EQ(folders.Temporary(), L"C:\\100%s\\Temp");
    EXPECT_EQ(folders.Update(), L"C:\\100%s\\Update");
    EXPECT_EQ(folders.ExecutablePath(), L"C:\\100%s\\Corvina.exe");
}

class SettingsTest : public testing::Test {
  protected:
    void SaveWith(WindowState state) {
        window_.Place = {state, {-4, 7, 640, 480}};
        SaveMainSettings(settings_, columns_, window_);
    }

    MemorySettings settings_;
    test::Journal journal_;
    RecordingMainWindow window_{journal_};
    EventListColumns columns_;
    SettingsValues values_;
};

TEST_F(SettingsTest, DisplayModeFollowsTheSystemOnlyWhereItCanBeDark) {
    EXPECT_EQ(ReadDisplayMode(settings_, true), 2);
    EXPECT_EQ(ReadDisplayMode(settings_, false), 0);
    for (const auto& [text, withDark, withoutDark] : std::vector<std::tuple<std::wstring, int, int>>{
             {L"2", 2, 1}, {L"1", 1, 1}, {L"0", 0, 0}, {L"x", 0, 0}, {L"", 2, 0}, {L"2nd", 2, 1}, {L"9", 9, 9}}) {
        settings_.Set(L"Options", L"CurrTheme", text);
        EXPECT_EQ(ReadDisplayMode(settings_, true), withDark) << testing::PrintToString(text);
        EXPECT_EQ(ReadDisplayMode(settings_, false), withoutDark) << testing::PrintToString(text);
    }
}

TEST_F(SettingsTest, OptionsTakeAnyText) {
    for (const auto& [text, isOn] : std::vector<std::pair<std::wstring, bool>>{
             {L"1", true}, {L"2", true}, {L"-1", true}, {L"0", false}, {L"on", false}, {L"", false}, {L"0.9", false}}) {
        settings_.Set(L"Options", L"GridLines", text);
        settings_.Set(L"Options", L"autoupdates", text);
        ReadGridLinesAndUpdates(settings_, values_);
        EXPECT_EQ(values_.GridLines, isOn) << testing::PrintToString(text);
        EXPECT_EQ(values_.AutomaticUpdates, isOn) << testing::PrintToString(text);
    }
    for (const auto& [text, isOn] : std::vector<std::pair<std::wstring, bool>>{
             {L"1", true}, {L"01", false}, {L"1x", false}, {L"1 ", false}, {L"2", false}, {L"", false}}) {
        settings_.Set(L"Options", L"ColorListView", text);
        ReadColorListView(settings_, values_);
        EXPECT_EQ(values_.ColorListView, isOn) << testing::PrintToString(text);
    }
    settings_.Set(L"Options", L"nVSplitPos", L"123abc");
    settings_.Set(L"Options", L"nHSplitPos", L"");
    ReadSplitters(settings_, values_);
    EXPECT_EQ(values_.VerticalSplitter, 123);
    EXPECT_EQ(values_.HorizontalSplitter, 250);
    EXPECT_EQ(ReadLanguageIndex(settings_), 0);
}

TEST_F(SettingsTest, TheWindowReturnsToItsPlace) {
    RestoreWindow(settings_, window_);
    EXPECT_EQ(window_.Place.State, WindowState::Normal);
    EXPECT_EQ(window_.Place.Rectangle.Left, 10);
    EXPECT_EQ(window_.Place.Rectangle.Top, 10);
    EXPECT_EQ(window_.Place.Rectangle.Width, 800);
    EXPECT_EQ(window_.Place.Rectangle.Height, 600);

    settings_.Set(L"Corvina", L"MainWindowLeft", L"-1920.9");
    settings_.Set(L"Corvina", L"MainWindowHeigth", L"700");
    settings_.Set(L"Corvina", L"MainWindowHeight", L"900");  // not the key of this program
    settings_.Set(L"Corvina", L"MainWindowIsMaximized", L"2");
    RestoreWindow(settings_, window_);
    EXPECT_EQ(window_.Place.Rectangle.Left, -1920);
    EXPECT_EQ(window_.Place.Rectangle.Height, 700);

    settings_.Set(L"Corvina", L"MainWindowIsMaximized", L"1.0");
    RestoreWindow(settings_, window_);
    EXPECT_EQ(window_.Place.State, WindowState::Maximized);
}

TEST_F(SettingsTest, EveryWindowHasAPlaceOfItsOwn) {
    const WindowPlace moved{-32000, 40, 900, 700};
    WriteWindowPlace(settings_, L"CorvinaDetails", moved);
    EXPECT_EQ(ReadWindowPlace(settings_, L"CorvinaDetails"), moved) << "off all screens is a place like any other";
    EXPECT_EQ(ReadWindowPlace(settings_, L"Corvina"), (WindowPlace{10, 10, 800, 600}));

    const WindowPlace first{1, 2, 1600, 1200};
    EXPECT_EQ(ReadWindowPlace(settings_, L"Other", first), first);
    settings_.Set(L"Other", L"MainWindowWidth", L"70");
    EXPECT_EQ(ReadWindowPlace(settings_, L"Other", first), (WindowPlace{1, 2, 70, 1200}));

    settings_.Set(L"CorvinaDetails", L"MainWindowTop", L"99999999999999999999");
    settings_.Set(L"CorvinaDetails", L"MainWindowWidth", L"wide");
    settings_.Set(L"CorvinaDetails", L"MainWindowHeigth", L"");
    EXPECT_EQ(ReadWindowPlace(settings_, L"CorvinaDetails"), (WindowPlace{-32000, INT_MAX, 0, 600}));
}

TEST_F(SettingsTest, CloseWritesInOrder) {
    columns_.LoadColumnSettings(settings_, i18n::Language());
    window_.SetListColumns(columns_.Shown());
    window_.Columns[1].Width = 321;
    window_.Vertical = 180;
    window_.Horizontal = 90;
    SaveWith(WindowState::Normal);
    const std::vector<std::wstring> expected = {
        L"ColumnsWidth=200,321,200,200,200,200,200,200,200,200,200,200,200,200,200,200,200,200,",
        L"Columns=111111000000000000",
        L"MainWindowLeft=-4",
        L"MainWindowTop=7",
        L"MainWindowWidth=640",
        L"MainWindowHeigth=480",
        L"MainWindowIsMaximized=0",
        L"nVSplitPos=180",
        L"nHSplitPos=90"};
    EXPECT_EQ(settings_.Writes, expected);
    EXPECT_EQ(settings_.Value(L"Options", L"nVSplitPos"), L"180");
    EXPECT_EQ(settings_.Value(L"Corvina", L"MainWindowTop"), L"7");
}

TEST_F(SettingsTest, OnlyANormalWindowChangesItsRectangle) {
    settings_.Set(L"Corvina", L"MainWindowLeft", L"55");
    SaveWith(WindowState::Minimized);
    EXPECT_EQ(settings_.Value(L"Corvina", L"MainWindowLeft"), L"55");
    EXPECT_EQ(settings_.Value(L"Corvina", L"MainWindowIsMaximized"), L"(missing)");
    SaveWith(WindowState::Maximized);
    EXPECT_EQ(settings_.Value(L"Corvina", L"MainWindowLeft"), L"55");
    EXPECT_EQ(settings_.Value(L"Corvina", L"MainWindowIsMaximized"), L"1");
    SaveWith(WindowState::Normal);
    EXPECT_EQ(settings_.Value(L"Corvina", L"MainWindowLeft"), L"-4");
    EXPECT_EQ(settings_.Value(L"Corvina", L"MainWindowIsMaximized"), L"0");
}

}  // namespace
}  // namespace corvina
