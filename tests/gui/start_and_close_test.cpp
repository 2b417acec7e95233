#include "gui/main_window_fixture.h"
#include "ui/win32/common_controls.h"

namespace corvina::test {
namespace {

using StartAndClose = MainWindowTest;

RECT WindowPlace(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

// Drags a splitter by that many pixels.
void Drag(HWND bar, int right, int down) {
    SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 1));
    SendMessageW(bar, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(1 + right, 1 + down));
    SendMessageW(bar, WM_LBUTTONUP, 0, MAKELPARAM(1, 1));
}

TEST_F(StartAndClose, AFreshFolderGetsItsFoldersAndTheWindowItsDefaults) {
    std::filesystem::remove_all(Folder / L"Settings");
    Start();
    for (const wchar_t* folder : {L"Settings", L"XML", L"Temp", L"Update"}) {
        EXPECT_TRUE(std::filesystem::is_directory(Folder / folder)) << std::filesystem::path(folder);
    }
    const RECT place = WindowPlace(Main());
    EXPECT_EQ(place.left, 10);
    EXPECT_EQ(place.top, 10);
    EXPECT_EQ(place.right - place.left, 800);
    EXPECT_EQ(place.bottom - place.top, 600);
    EXPECT_TRUE(IsWindowVisible(Main()));

    // The list is as high as its splitter's position less two pixels, the tree as wide as the other's.
    const RECT list = PlaceIn(Main(), ListControl());
    EXPECT_EQ(list.bottom - list.top, 248);
    EXPECT_EQ(list.left, 252);
    EXPECT_EQ(PlaceIn(Main(), TreeControl()).right, 248);

    ASSERT_EQ(ColumnCountShown(), 6);
    for (int column = 0; column < 6; ++column) {
        EXPECT_EQ(SendMessageW(ListControl(), LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0), 200);
    }
    EXPECT_EQ(ColumnHeader(3), L"Task Category");
    EXPECT_EQ(GetFocus(), TreeControl());
    EXPECT_EQ(RowCount(), 0);
    EXPECT_NE(TextOf(Child(L"Static", 2)).find(L"Version"), std::wstring::npos);
}

TEST_F(StartAndClose, WhatTheUserArrangedIsThereAgainAfterTheNextStart) {
    WriteLog(L"Application", 3);
    Start();
    SetWindowPos(Main(), nullptr, 40, 30, 900, 640, SWP_NOZORDER);
    SendMessageW(ListControl(), LVM_SETCOLUMNWIDTH, 1, 123);
    Drag(Child(L"CorvinaSplitter", 0), 60, 0);
    Drag(Child(L"CorvinaSplitter", 1), 0, -35);
    CloseAndDestroy();
    EXPECT_EQ(Ended, 1);
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowLeft"), L"40");
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowHeigth"), L"640");
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowIsMaximized"), L"0");
    EXPECT_EQ(ReadSetting(L"Options", L"nVSplitPos"), L"310");
    EXPECT_EQ(ReadSetting(L"Options", L"nHSplitPos"), L"215");
    EXPECT_EQ(ReadSetting(L"Corvina", L"ColumnsWidth").substr(0, 12), L"200,123,200,");

    Start();
    const RECT place = WindowPlace(Main());
    EXPECT_EQ(place.left, 40);
    EXPECT_EQ(place.right - place.left, 900);
    EXPECT_EQ(PlaceIn(Main(), TreeControl()).right, 308);
    const RECT list = PlaceIn(Main(), ListControl());
    EXPECT_EQ(list.bottom - list.top, 213);
    EXPECT_EQ(SendMessageW(ListControl(), LVM_GETCOLUMNWIDTH, 1, 0), 123);
}

TEST_F(StartAndClose, ClosingMaximizedOrMinimizedKeepsTheNormalPlace) {
    WriteSetting(L"Corvina", L"MainWindowWidth", L"777");
    WriteSetting(L"Corvina", L"MainWindowIsMaximized", L"1.0");
    Start();
    EXPECT_TRUE(IsZoomed(Main()));
    CloseAndDestroy();
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowWidth"), L"777");
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowIsMaximized"), L"1");

    WriteSetting(L"Corvina", L"MainWindowIsMaximized", L"0");
    Start();
    ShowWindow(Main(), SW_MINIMIZE);
    CloseAndDestroy();
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowWidth"), L"777");
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowLeft"), L"missing");
}

TEST_F(StartAndClose, SplittersStayInsideTheWindow) {
    WriteSetting(L"Options", L"nVSplitPos", L"99999");
    WriteSetting(L"Options", L"nHSplitPos", L"-5");
    Start();
    RECT client{};
    GetClientRect(Main(), &client);
    EXPECT_LT(PlaceIn(Main(), TreeControl()).right, client.right - 40);
    const RECT list = PlaceIn(Main(), ListControl());
    EXPECT_GT(list.bottom, list.top + 40);

    Drag(Child(L"CorvinaSplitter", 0), -5000, 0);
    EXPECT_GT(PlaceIn(Main(), TreeControl()).right, 40);
    // A drag ends when the mouse is taken away, and the bar does not follow the pointer any more.
    const HWND bar = Child(L"CorvinaSplitter", 1);
    SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 1));
    SetCapture(TreeControl());
    const RECT before = PlaceIn(Main(), bar);
    SendMessageW(bar, WM_MOUSEMOVE, 0, MAKELPARAM(1, 50));
    EXPECT_EQ(PlaceIn(Main(), bar).top, before.top);
    ReleaseCapture();
}

TEST_F(StartAndClose, TheEndOfTheSessionSavesToo) {
    Start();
    EXPECT_NE(SendMessageW(Main(), WM_QUERYENDSESSION, 0, 0), FALSE);
    SendMessageW(Main(), WM_ENDSESSION, FALSE, 0);
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowWidth"), L"missing");
    SendMessageW(Main(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowWidth"), L"800");
}

TEST_F(StartAndClose, AnotherResolutionScalesColumnsSplittersAndRows) {
    Start();
    const RECT place{10, 10, 1210, 860};
    SendMessageW(Main(), WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
    EXPECT_EQ(SendMessageW(ListControl(), LVM_GETCOLUMNWIDTH, 0, 0), 300);
    EXPECT_EQ(PlaceIn(Main(), TreeControl()).right, 373);
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HGDIOBJ>(SendMessageW(ListControl(), WM_GETFONT, 0, 0)), sizeof(font), &font);
    EXPECT_EQ(font.lfHeight, 24);
    EXPECT_EQ(WindowPlace(Main()).right, 1210);
}

// The whole program as its own process: its exit status is what scripts see.
TEST_F(StartAndClose, TheProgramEndsWithStatusOneWhenItsWindowIsClosed) {
    WriteLog(L"Application", 2);
    wchar_t own[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    const auto program = std::filesystem::path(own).parent_path() / L".." / L".." / L"bin" / L"Corvina.exe";
    const std::wstring copy = (Folder / L"Corvina.exe").wstring();
    ASSERT_TRUE(CopyFileW(program.c_str(), copy.c_str(), FALSE));

    STARTUPINFOW start{};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process{};
    std::wstring command = L"\"" + copy + L"\"";
    ASSERT_TRUE(
        CreateProcessW(copy.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
    HWND window = nullptr;
    for (int i = 0; i < 300 && (window == nullptr || !IsWindowVisible(window)); ++i) {
        Sleep(100);
        window = FindWindowW(L"CorvinaMainWindow", nullptr);
    }
    ASSERT_NE(window, nullptr);
    PostMessageW(window, WM_CLOSE, 0, 0);
    ASSERT_EQ(WaitForSingleObject(process.hProcess, 30'000), WAIT_OBJECT_0);
    DWORD status = 0;
    GetExitCodeProcess(process.hProcess, &status);
    EXPECT_EQ(status, 1u);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowLeft"), L"10");
}

}  // namespace
}  // namespace corvina::test
