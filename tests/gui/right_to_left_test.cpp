// The windows of a language that is written from right to left, in the real window.
#include "app/command_ids.h"
#include "gui/main_window_fixture.h"
#include "ui/win32/layout_direction.h"

namespace corvina::test {
namespace {

constexpr int Arabic = 6;
constexpr int LanguageList = 110;                                          // in the options dialog
constexpr LONG_PTR ReadFromTheRight = WS_EX_RTLREADING | WS_EX_LAYOUTRTL;

RECT OnScreen(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

bool IsReadFromTheRight(HWND field) {
    return (GetWindowLongPtrW(field, GWL_EXSTYLE) & ReadFromTheRight) != 0;
}

class RightToLeftTest : public MainWindowTest {
  protected:
    void StartIn(int language) {
        WriteLog(L"Application", 3);
        WriteSetting(L"Options", L"Language", std::to_wstring(language));
        Start();
    }
    void SelectApplication(int language) {
        SelectNode({std::wstring(i18n::Language(language).Text(5)), L"Application"});
        SelectRowsOnly({0});
    }
    // Runs a command that opens a dialog, looks at the dialog and closes it.
    void LookAtDialog(WPARAM command, const std::function<void(HWND)>& look) {
        WhileModal([&] { PostMessageW(Main(), WM_COMMAND, command, 0); },
                   [&] {
                       const HWND dialog = GetLastActivePopup(Main());
                       if (dialog == Main() || !IsWindowVisible(dialog)) {
                           return false;
                       }
                       look(dialog);
                       PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
                       return true;
                   });
    }
    // Where a column's header stands on the screen.
    RECT HeaderPlace(int column) const {
        RECT place{};
        SendMessageW(HeaderControl(), HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&place));
        MapWindowPoints(HeaderControl(), nullptr, reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
    HWND VerticalBar() const { return Child(L"CorvinaSplitter", 0); }
    // Presses the mouse on the bar, moves it by so many pixels of the screen to the right, and lets it go.
    void DragVerticalBar(int pixels) {
        const auto mouse = [this](UINT message, POINT place) {
            ScreenToClient(VerticalBar(), &place);
            SendMessageW(VerticalBar(), message, 0, MAKELPARAM(place.x, place.y));
        };
        const RECT bar = OnScreen(VerticalBar());
        const POINT start{(bar.left + bar.right) / 2, bar.top + 20};
        mouse(WM_LBUTTONDOWN, start);
        mouse(WM_MOUSEMOVE, {start.x + pixels, start.y});
        mouse(WM_LBUTTONUP, {start.x + pixels, start.y});
    }
    void ExpectLayout(bool mirrored) {
        for (const HWND window : {Main(), TreeControl(), ListControl(), HeaderControl(), VerticalBar(),
                                  Child(L"CorvinaSplitter", 1), Child(L"Static", 0), Child(L"Static", 1)}) {
            EXPECT_EQ(ui::IsMirrored(window), mirrored);
        }
        const auto isBefore = [mirrored](RECT one, RECT other) {
            return mirrored ? one.left >= other.right : one.right <= other.left;
        };
        EXPECT_TRUE(isBefore(OnScreen(TreeControl()), OnScreen(ListControl())));
        EXPECT_TRUE(isBefore(OnScreen(Field(0)), OnScreen(Field(1))));
        EXPECT_TRUE(isBefore(OnScreen(Field(2)), OnScreen(Field(3))));
        EXPECT_TRUE(isBefore(HeaderPlace(0), HeaderPlace(1)));
        EXPECT_EQ(IsReadFromTheRight(Field(0)), mirrored);
        EXPECT_FALSE(IsReadFromTheRight(Field(3))) << "markup is read from the left";
    }
};

TEST_F(RightToLeftTest, EveryPartIsLaidOutInTheLanguagesDirection) {
    StartIn(Arabic);
    SelectApplication(Arabic);
    ExpectLayout(true);
    // The store has no messages, so the description is the language's own text about that.
    EXPECT_TRUE(IsReadFromTheRight(Field(2)));
    RECT inside{};
    GetClientRect(Field(3), &inside);
    MapWindowPoints(Field(3), nullptr, reinterpret_cast<POINT*>(&inside), 2);
    EXPECT_GT(OnScreen(Field(3)).right - inside.right, inside.left - OnScreen(Field(3)).left)
        << "the scroll bar of markup stays at the right";
}

TEST_F(RightToLeftTest, AnotherLanguageTurnsTheWindowRoundAndBack) {
    StartIn(i18n::English);
    SelectApplication(i18n::English);
    ExpectLayout(false);
    const RECT place = OnScreen(Main());
    const int treeWidth = static_cast<int>(OnScreen(TreeControl()).right - OnScreen(TreeControl()).left);
    for (const auto& [entry, language] : {std::pair(Arabic, Arabic), std::pair(0, i18n::German)}) {
        LookAtDialog(CORVINA_ID_OPTIONS, [entry = entry](HWND dialog) {
            SendMessageW(GetDlgItem(dialog, LanguageList), CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
            SendMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
        });
        SelectApplication(language);
        ExpectLayout(language == Arabic);
        const RECT now = OnScreen(Main());
        EXPECT_TRUE(EqualRect(&now, &place));
        EXPECT_EQ(OnScreen(TreeControl()).right - OnScreen(TreeControl()).left, treeWidth);
        EXPECT_NE(TextOf(Field(3)), L"");
    }
}

TEST_F(RightToLeftTest, TheSplitterFollowsTheMouseAndIsKept) {
    StartIn(Arabic);
    const RECT before = OnScreen(TreeControl());
    DragVerticalBar(-60);
    const RECT after = OnScreen(TreeControl());
    EXPECT_EQ(after.right, before.right);
    EXPECT_EQ(after.left, before.left - 60);
    CloseAndDestroy();
    Start();
    EXPECT_EQ(OnScreen(TreeControl()).left, after.left);
}

TEST_F(RightToLeftTest, CellsKeepTextsOfTheOtherDirectionTogether) {
    StartIn(Arabic);
    SelectApplication(Arabic);
    const std::wstring source = Cell(0, 2);
    ASSERT_FALSE(source.empty());
    EXPECT_EQ(source.find(L'\x200E'), source.npos) << "letters at both ends need no marks";
    const std::wstring properties = TextOf(Field(0));
    EXPECT_NE(properties.find(L"\x200E{"), properties.npos) << properties;
    EXPECT_NE(properties.find(L"}\x200E"), properties.npos);
}

TEST_F(RightToLeftTest, WhatOpensOverTheWindowIsLaidOutLikeIt) {
    StartIn(Arabic);
    SelectApplication(Arabic);
    for (const WPARAM command : {CORVINA_ID_OPTIONS, CORVINA_ID_ABOUT, CORVINA_ID_EVENT_PROPERTIES}) {
        LookAtDialog(command, [this](HWND dialog) {
            EXPECT_TRUE(ui::IsMirrored(dialog));
            EXPECT_EQ(GetWindow(dialog, GW_OWNER), Main());
        });
    }
}

}  // namespace
}  // namespace corvina::test
