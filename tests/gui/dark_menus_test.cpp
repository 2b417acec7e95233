// The menus of the black scheme: dark, with every text in its place, and light again in the white one.
#include "app/command_ids.h"
#include "gui/main_window_fixture.h"
#include "ui/win32/common_controls.h"

namespace corvina::test {
namespace {

class DarkMenus : public MainWindowTest {
  protected:
    static bool IsDrawnByProgram(HMENU menu) {
        MENUITEMINFOW entry{};
        entry.cbSize = sizeof(entry);
        entry.fMask = MIIM_FTYPE;
        GetMenuItemInfoW(menu, 0, TRUE, &entry);
        return (entry.fType & MFT_OWNERDRAW) != 0;
    }
    COLORREF BarPixel(int fromRight) const {
        MENUBARINFO bar{};
        bar.cbSize = sizeof(bar);
        GetMenuBarInfo(Main(), OBJID_MENU, 0, &bar);
        RECT outer{};
        GetWindowRect(Main(), &outer);
        const HDC device = GetWindowDC(Main());
        const COLORREF color = GetPixel(device, static_cast<int>(bar.rcBar.right - outer.left) - fromRight,
                                        static_cast<int>(bar.rcBar.top - outer.top) + 3);
        ReleaseDC(Main(), device);
        return color;
    }
};

TEST_F(DarkMenus, EntriesKeepTheirTextsAndStates) {
    WriteLog(L"Application", 3);
    WriteSetting(L"Options", L"CurrTheme", L"1");
    Start();
    SelectNode({L"Windows Logs", L"Application"});
    EXPECT_TRUE(IsDrawnByProgram(GetMenu(Main())));
    RECT list{};
    GetWindowRect(ListControl(), &list);
    const auto entries = ContextMenuOf(ListControl(), {list.left + 20, list.top + 60});
    ASSERT_EQ(entries.size(), 10u);
    EXPECT_EQ(entries[0].Text, L"Properties");
    EXPECT_EQ(entries[7].Text, L"Remove from list");
    EXPECT_EQ(entries[7].Command, static_cast<UINT>(CORVINA_ID_REMOVE_ROWS));
    EXPECT_TRUE(entries[7].Enabled);
    EXPECT_EQ(entries[1].Command, 0u);

    COLORREF ground = 0;
    const LPARAM place = MAKELPARAM(list.left + 20, list.top + 60);
    WhileModal([&] { SendMessageW(Main(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(ListControl()), place); },
               [&] {
                   const HWND shown = FindWindowW(L"#32768", nullptr);
                   if (shown == nullptr || !IsWindowVisible(shown)) {
                       return false;
                   }
                   const HDC device = GetWindowDC(shown);
                   ground = GetPixel(device, 8, 10);
                   ReleaseDC(shown, device);
                   EndMenu();
                   return true;
               });
    EXPECT_EQ(ground, DarkPalette.ControlBack);
    EXPECT_EQ(BarPixel(10), DarkPalette.Panel);
}

TEST_F(DarkMenus, TheBarStaysOffWhatIsBelowIt) {
    WriteLog(L"Application", 3);
    WriteSetting(L"Options", L"CurrTheme", L"1");
    Start();
    const auto topOfTree = [this] {
        const HDC device = GetWindowDC(TreeControl());
        const COLORREF color = GetPixel(device, 230, 0);
        ReleaseDC(TreeControl(), device);
        return color;
    };
    RedrawWindow(TreeControl(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_UPDATENOW);
    const COLORREF edge = topOfTree();
    SendMessageW(Main(), WM_NCACTIVATE, FALSE, 0);
    EXPECT_EQ(topOfTree(), edge);
}

TEST_F(DarkMenus, LettersChooseEntries) {
    WriteLog(L"Application", 3);
    WriteSetting(L"Options", L"CurrTheme", L"1");
    Start();
    const HMENU bar = GetMenu(Main());
    const auto typed = [&](wchar_t letter) {
        return SendMessageW(Main(), WM_MENUCHAR, MAKEWPARAM(letter, MF_POPUP), reinterpret_cast<LPARAM>(bar));
    };
    EXPECT_EQ(typed(L'p'), MAKELRESULT(0, MNC_EXECUTE));
    EXPECT_EQ(typed(L'E'), MAKELRESULT(1, MNC_SELECT)) << "two entries begin so";
    EXPECT_EQ(typed(L'\xD800'), 0);
}

TEST_F(DarkMenus, TheWhiteSchemeLeavesThemToTheSystem) {
    WriteLog(L"Application", 3);
    Start();
    EXPECT_FALSE(IsDrawnByProgram(GetMenu(Main())));
    EXPECT_NE(BarPixel(10), DarkPalette.Panel);
}

}  // namespace
}  // namespace corvina::test
