// The options dialog and the about box in the real window, used with keys and clicks.
#include "app/command_ids.h"
#include "gui/main_window_fixture.h"

namespace corvina::test {
namespace {

// The dialog's controls.
constexpr int ViewTab = 101;
constexpr int LanguageList = 110;
constexpr int AutomaticUpdatesBox = 111;
constexpr int DisplayModeList = 120;
constexpr int ThemeInListViewBox = 121;
constexpr int GridLinesBox = 122;

class OptionsDialogTest : public MainWindowTest {
  protected:
    // Opens the dialog with a command and does something in it; it must end there.
    void InDialog(WPARAM command, const wchar_t* title, const std::function<void(HWND)>& action) {
        WhileModal([&] { SendMessageW(Main(), WM_COMMAND, command, 0); },
                   [&] {
                       const HWND dialog = FindWindowW(L"#32770", title);
                       if (dialog == nullptr || !IsWindowVisible(dialog)) {
                           return false;
                       }
                       action(dialog);
                       return true;
                   });
    }
    static void Click(HWND dialog, int control) { SendMessageW(GetDlgItem(dialog, control), BM_CLICK, 0, 0); }
    static void Select(HWND dialog, int list, WPARAM entry) {
        SendMessageW(GetDlgItem(dialog, list), CB_SETCURSEL, entry, 0);
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(GetDlgItem(dialog, list)));
    }
    static bool IsShown(HWND dialog, int control) { return IsWindowVisible(GetDlgItem(dialog, control)) != FALSE; }
    static void PostKey(HWND dialog, WPARAM key) {
        const HWND focused = GetFocus();
        PostMessageW(IsChild(dialog, focused) ? focused : dialog, WM_KEYDOWN, key, 1);
    }
    COLORREF MainColor() {
        Pump();
        UpdateWindow(Main());
        const HDC device = GetDC(Field(0));
        const COLORREF color = GetPixel(device, 200, 60);
        ReleaseDC(Field(0), device);
        return color;
    }
};

TEST_F(OptionsDialogTest, PagesAndTheBoxThatBelongsToTheBlackScheme) {
    WriteLog(L"Application", 3);
    Start();
    InDialog(CORVINA_ID_OPTIONS, L"Options", [](HWND dialog) {
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, LanguageList));
        EXPECT_EQ(SendMessageW(GetDlgItem(dialog, LanguageList), CB_GETCOUNT, 0, 0), 24);
        EXPECT_EQ(SendMessageW(GetDlgItem(dialog, LanguageList), CB_GETCURSEL, 0, 0), 1);
        EXPECT_TRUE(IsShown(dialog, AutomaticUpdatesBox));
        EXPECT_FALSE(IsShown(dialog, GridLinesBox));
        Click(dialog, ViewTab);
        EXPECT_FALSE(IsShown(dialog, LanguageList));
        EXPECT_TRUE(IsShown(dialog, DisplayModeList));
        EXPECT_TRUE(IsShown(dialog, GridLinesBox));
        EXPECT_FALSE(IsShown(dialog, ThemeInListViewBox));
        Select(dialog, DisplayModeList, 1);
        EXPECT_TRUE(IsShown(dialog, ThemeInListViewBox));
        Select(dialog, DisplayModeList, 0);
        EXPECT_FALSE(IsShown(dialog, ThemeInListViewBox));
        Click(dialog, GridLinesBox);
        PostKey(dialog, VK_ESCAPE);
    });
    EXPECT_EQ(ReadSetting(L"Options", L"GridLines"), L"missing");
    EXPECT_TRUE(Boxes.Shown.empty());
}

TEST_F(OptionsDialogTest, EnterAppliesAndARefusedRestartDarkensTheWindowAtOnce) {
    WriteLog(L"Application", 3);
    Start();
    Boxes.Answer = false;
    EXPECT_EQ(MainColor(), LightPalette.ControlBack);
    InDialog(CORVINA_ID_OPTIONS, L"Options", [](HWND dialog) {
        Click(dialog, AutomaticUpdatesBox);
        Click(dialog, ViewTab);
        Select(dialog, DisplayModeList, 1);
        Click(dialog, ThemeInListViewBox);
        Click(dialog, GridLinesBox);
        SetFocus(GetDlgItem(dialog, DisplayModeList));
        PostKey(dialog, VK_RETURN);
    });
    EXPECT_EQ(Boxes.Shown.size(), 1u);
    EXPECT_EQ(ReadSetting(L"Options", L"CurrTheme"), L"1");
    EXPECT_EQ(ReadSetting(L"Options", L"ColorListView"), L"1");
    EXPECT_EQ(ReadSetting(L"Options", L"GridLines"), L"1");
    EXPECT_EQ(ReadSetting(L"Options", L"autoupdates"), L"1");
    EXPECT_EQ(ReadSetting(L"Options", L"Language"), L"1");
    EXPECT_EQ(MainColor(), DarkPalette.ControlBack);
    EXPECT_EQ(Ended, 0);
    EXPECT_TRUE(StartedPrograms().empty());
}

TEST_F(OptionsDialogTest, AnAcceptedRestartStartsTheProgramAndCloses) {
    WriteLog(L"Application", 3);
    Start();
    InDialog(CORVINA_ID_OPTIONS, L"Options", [](HWND dialog) {
        Click(dialog, ViewTab);
        Select(dialog, DisplayModeList, 1);
        Click(dialog, IDOK);
    });
    ASSERT_EQ(StartedPrograms().size(), 1u);
    EXPECT_TRUE(StartedPrograms().front().ends_with(L"\\Corvina.exe"));
    EXPECT_EQ(Ended, 1);
    EXPECT_EQ(ReadSetting(L"Options", L"CurrTheme"), L"1");
    EXPECT_EQ(ReadSetting(L"Corvina", L"MainWindowWidth"), L"800");
}

TEST_F(OptionsDialogTest, AnotherLanguageReachesMenusTreeAndHeaders) {
    WriteLog(L"Application", 3);
    Start();
    SelectNode({L"Windows Logs", L"Application"});
    InDialog(CORVINA_ID_OPTIONS, L"Options", [](HWND dialog) {
        Select(dialog, LanguageList, 0);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(ReadSetting(L"Options", L"Language"), L"0");
    EXPECT_EQ(ReadSetting(L"Options", L"CurrTheme"), L"0");
    EXPECT_EQ(ReadSetting(L"Options", L"autoupdates"), L"0");
    EXPECT_TRUE(Boxes.Shown.empty()) << "the mode stays, so nothing has to be restarted";
    SelectNode({L"Windows-Protokolle", L"Application"});
    EXPECT_EQ(RowCount(), 3);
    const i18n::Language german(i18n::German);
    EXPECT_EQ(ColumnHeader(1), german.Text(128));
    wchar_t title[64] = {};
    GetMenuStringW(GetMenu(Main()), 0, title, 64, MF_BYPOSITION);
    EXPECT_EQ(title, german.Text(27));
}

TEST_F(OptionsDialogTest, TheAboutBoxEndsWithEscapeAndWithItsButton) {
    WriteLog(L"Application", 3);
    Start();
    InDialog(CORVINA_ID_ABOUT, L"About", [](HWND dialog) {
        EXPECT_EQ(TextOf(GetDlgItem(dialog, IDCANCEL)), L"Close");
        PostKey(dialog, VK_ESCAPE);
    });
    InDialog(CORVINA_ID_ABOUT, L"About", [](HWND dialog) {
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDCANCEL));
        PostKey(dialog, VK_RETURN);
    });
}

}  // namespace
}  // namespace corvina::test
