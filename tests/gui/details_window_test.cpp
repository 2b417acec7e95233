// The window of one event, opened over the main window and used as its user does.
#include <algorithm>
#include <array>

#include "app/command_ids.h"
#include "details/win32/details_box.h"
#include "gui/main_window_fixture.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/scaling.h"

namespace corvina::test {
namespace {

enum Button { General, Details, Previous, Next };
enum Box { Left, Right, Description, Xml };

class DetailsWindowGui : public MainWindowTest {
  protected:
    void StartWithLog(std::uint64_t events) {
        WriteLog(L"Application", events);
        Start();
        SelectNode({L"Windows Logs", L"Application"});
    }

    // Opens the window and calls `action` again and again until it answers true; it closes the window.
    void Open(const std::function<bool()>& action) {
        WhileModal([this] { SendMessageW(Main(), WM_COMMAND, CORVINA_ID_EVENT_PROPERTIES, 0); },
                   [&] { return FindWindowOfEvent() && action(); });
    }
    bool FindWindowOfEvent() {
        window_ = GetLastActivePopup(Main());
        return window_ != Main() && IsWindowVisible(window_);
    }

    HWND ButtonWindow(Button button) const { return GetDlgItem(window_, 200 + button); }
    HWND BoxWindow(Box box) const { return GetDlgItem(window_, 210 + box); }
    void Click(Button button) const { SendMessageW(ButtonWindow(button), BM_CLICK, 0, 0); }
    void Close() const { SendMessageW(window_, WM_CLOSE, 0, 0); }
    void ExpectPlace(HWND control, LONG left, LONG top, LONG width, LONG height) const {
        const RECT place = PlaceIn(window_, control);
        EXPECT_EQ(place.left, left) << GetDlgCtrlID(control);
        EXPECT_EQ(place.top, top) << GetDlgCtrlID(control);
        EXPECT_EQ(place.right - place.left, std::max<LONG>(width, 0)) << GetDlgCtrlID(control);
        EXPECT_EQ(place.bottom - place.top, std::max<LONG>(height, 0)) << GetDlgCtrlID(control);
    }
    void ExpectPlaces(LONG n = 1) const {  // n times the usual resolution
        RECT area{};
        GetClientRect(window_, &area);
        ExpectPlace(ButtonWindow(General), 10 * n, 16 * n, 200 * n, 24 * n);
        ExpectPlace(ButtonWindow(Details), 220 * n, 16 * n, 200 * n, 24 * n);
        ExpectPlace(ButtonWindow(Previous), area.right - 64 * n, 15 * n, 24 * n, 24 * n);
        ExpectPlace(ButtonWindow(Next), area.right - 34 * n, 14 * n, 24 * n, 24 * n);
        ExpectPlace(BoxWindow(Left), 4 * n, 70 * n, 440 * n, 160 * n);
        ExpectPlace(BoxWindow(Right), 446 * n, 70 * n, area.right - 448 * n, 160 * n);
        ExpectPlace(BoxWindow(Description), 4 * n, 240 * n, area.right - 8 * n, area.bottom - 250 * n);
        ExpectPlace(BoxWindow(Xml), 4 * n, 50 * n, area.right - 8 * n, area.bottom - 60 * n);
    }
    // Which boxes can be seen: "1110" for the first tab.
    std::string Visible() const {
        std::string visible;
        for (const Box box : {Left, Right, Description, Xml}) {
            visible += IsWindowVisible(BoxWindow(box)) ? '1' : '0';
        }
        return visible;
    }
    static std::wstring ClipboardText() {
        std::wstring text;
        OpenClipboard(nullptr);
        if (const HANDLE block = GetClipboardData(CF_UNICODETEXT)) {
            text = static_cast<const wchar_t*>(GlobalLock(block));
            GlobalUnlock(block);
        }
        CloseClipboard();
        return text;
    }

    // The tip that the mouse finds at a point of a window.
    std::wstring TipAt(HWND window, POINT place) const {
        HWND tips = nullptr;
        while ((tips = FindWindowExW(nullptr, tips, TOOLTIPS_CLASSW, nullptr)) != nullptr &&
               GetWindow(tips, GW_OWNER) != window_) {
        }
        wchar_t text[100] = {};
        TTHITTESTINFOW hit{};
        hit.hwnd = window;
        hit.pt = place;
        hit.ti.cbSize = TTTOOLINFOW_V2_SIZE;
        hit.ti.lpszText = text;
        return SendMessageW(tips, TTM_HITTESTW, 0, reinterpret_cast<LPARAM>(&hit)) != FALSE ? text : L"";
    }

    HWND window_ = nullptr;
};

TEST_F(DetailsWindowGui, StandsOverTheMainWindowAndFollowsTheTableAtEverySize) {
    StartWithLog(3);
    ASSERT_EQ(ui::Scale::Of(Main()).DotsPerInch(), 96u);
    Open([this] {
        EXPECT_FALSE(IsWindowEnabled(Main()));
        RECT place{};
        GetWindowRect(window_, &place);
        EXPECT_EQ(place.left, 10);
        EXPECT_EQ(place.top, 10);
        EXPECT_EQ(place.right - place.left, 800);
        EXPECT_EQ(place.bottom - place.top, 600);
        ExpectPlaces();
        for (const SIZE size : {SIZE{1200, 850}, SIZE{500, 300}, SIZE{300, 120}}) {
            SetWindowPos(window_, nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER | SWP_NOMOVE);
            ExpectPlaces();
        }
        RECT suggested{0, 0, 1200, 850};
        SendMessageW(window_, WM_DPICHANGED, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&suggested));
        ExpectPlaces(2);
        EXPECT_EQ(GetFocus(), BoxWindow(Description));
        Close();
        return true;
    });
    EXPECT_TRUE(IsWindowEnabled(Main()));
    EXPECT_EQ(ReadSetting(L"CorvinaDetails", L"MainWindowLeft"), L"0");
    EXPECT_EQ(ReadSetting(L"CorvinaDetails", L"MainWindowHeigth"), L"850");
}

TEST_F(DetailsWindowGui, ShowsTheEventOnTwoTabsAndStepsToBothEnds) {
    StartWithLog(3);
    Open([this] {
        EXPECT_EQ(Visible(), "1110");
        EXPECT_EQ(TextOf(BoxWindow(Left)), TextOf(Field(0)));
        EXPECT_EQ(TextOf(BoxWindow(Right)), TextOf(Field(1)));
        EXPECT_EQ(TextOf(BoxWindow(Description)), TextOf(Field(2)));
        Click(Details);
        EXPECT_EQ(Visible(), "0001");
        EXPECT_EQ(TextOf(BoxWindow(Xml)).substr(0, 6), L"<Event");
        EXPECT_NE(TextOf(BoxWindow(Xml)).find(L"\r\n  <System>\r\n"), std::wstring::npos);
        Click(General);
        EXPECT_EQ(Visible(), "1110");

        Click(Previous);
        EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{0});
        for (const int row : {1, 2, 2}) {
            Click(Next);
            EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{row});
        }
        EXPECT_NE(TextOf(window_).find(L"Properties - Event ID " + Cell(2, 4) + L", " + Cell(2, 2) + L", "),
                  std::wstring::npos);
        EXPECT_NE(TextOf(BoxWindow(Right)).find(L"Event Record ID: 1\r\n"), std::wstring::npos);
        EXPECT_EQ(TextOf(BoxWindow(Right)), TextOf(Field(1))) << "the pane below the list follows";
        Close();
        return true;
    });
}

TEST_F(DetailsWindowGui, ArrowsHaveTipsAlsoWhileTheyAreDisabled) {
    StartWithLog(1);
    Open([this] {
        SetWindowPos(window_, nullptr, 0, 0, 900, 500, SWP_NOZORDER | SWP_NOMOVE);
        for (const auto& [button, tip] : {std::pair(Previous, L"Previous item"), std::pair(Next, L"Next Element")}) {
            EXPECT_FALSE(IsWindowEnabled(ButtonWindow(button)));
            EXPECT_EQ(TipAt(ButtonWindow(button), {5, 5}), tip);
            const RECT place = PlaceIn(window_, ButtonWindow(button));
            EXPECT_EQ(TipAt(window_, {place.left + 5, place.top + 5}), tip);
            EXPECT_EQ(TipAt(window_, {place.left + 5, place.bottom + 5}), L"");
        }
        Close();
        return true;
    });
}

TEST_F(DetailsWindowGui, KeysReachEverythingAndArrowsEndWithTheList) {
    StartWithLog(3);
    Open([this] {
        const auto press = [this](WPARAM key) {
            MSG message{};
            message.hwnd = GetFocus();
            message.wParam = key;
            message.lParam = 1;
            for (const UINT kind : {WM_KEYDOWN, WM_KEYUP}) {
                message.message = kind;
                if (!IsDialogMessageW(window_, &message)) {
                    DispatchMessageW(&message);
                }
            }
        };
        EXPECT_FALSE(IsWindowEnabled(ButtonWindow(Previous))) << "the first row is selected";
        for (const HWND expected :
             {ButtonWindow(General), ButtonWindow(Next), BoxWindow(Left), BoxWindow(Right), BoxWindow(Description)}) {
            press(VK_TAB);
            EXPECT_EQ(GetFocus(), expected);
        }
        press(VK_TAB);
        press(VK_RIGHT);
        EXPECT_EQ(Visible(), "0001");
        EXPECT_EQ(SendMessageW(ButtonWindow(Details), BM_GETCHECK, 0, 0), BST_CHECKED);
        press(VK_LEFT);
        EXPECT_EQ(Visible(), "1110");
        press(VK_TAB);
        press(VK_SPACE);
        EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{1});
        EXPECT_TRUE(IsWindowEnabled(ButtonWindow(Previous)));
        EXPECT_EQ(GetFocus(), ButtonWindow(Next));
        press(VK_RETURN);
        EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{2});
        EXPECT_FALSE(IsWindowEnabled(ButtonWindow(Next)));
        EXPECT_EQ(GetFocus(), BoxWindow(Description)) << "a disabled arrow would swallow the keys";
        EXPECT_EQ(TextOf(ButtonWindow(Previous)), L"Previous item");
        EXPECT_EQ(TextOf(ButtonWindow(Next)), L"Next Element");
        Close();
        return true;
    });
}

TEST_F(DetailsWindowGui, EscapeLeavesTheSavedPlace) {
    StartWithLog(2);
    WriteSetting(L"CorvinaDetails", L"MainWindowLeft", L"-90");
    WriteSetting(L"CorvinaDetails", L"MainWindowWidth", L"640");
    for (const Box focused : {Left, Description, Xml}) {
        Open([this, focused] {
            RECT place{};
            GetWindowRect(window_, &place);
            EXPECT_EQ(place.left, -90);
            EXPECT_EQ(place.right - place.left, 640);
            SetWindowPos(window_, nullptr, 50, 60, 700, 500, SWP_NOZORDER);
            Click(focused == Xml ? Details : General);
            SetFocus(BoxWindow(focused));
            PostMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, 1);
            return true;
        });
        EXPECT_FALSE(IsWindow(window_));
        EXPECT_TRUE(IsWindowEnabled(Main()));
    }
    EXPECT_EQ(ReadSetting(L"CorvinaDetails", L"MainWindowLeft"), L"-90");
    EXPECT_EQ(ReadSetting(L"CorvinaDetails", L"MainWindowHeigth"), L"missing");
    EXPECT_EQ(Ended, 0);
}

TEST_F(DetailsWindowGui, OpensByEnterAndByDoubleClickButNotWithoutARow) {
    StartWithLog(2);
    SetFocus(ListControl());
    int opened = 0;
    const auto count = [&] {
        if (!FindWindowOfEvent()) {
            return false;
        }
        ++opened;
        Close();
        return true;
    };
    WhileModal([this] { PressKey(VK_RETURN); }, count);
    EXPECT_EQ(opened, 1);
    RECT row{};
    row.left = LVIR_LABEL;
    SendMessageW(ListControl(), LVM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&row));
    const LPARAM inside = MAKELPARAM(row.left + 5, (row.top + row.bottom) / 2);
    WhileModal(
        [&] {
            for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP}) {
                PostMessageW(ListControl(), message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, inside);
            }
            Pump();
        },
        count);
    EXPECT_EQ(opened, 2);
    EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{1});
    SelectRowsOnly({});
    PressKey(VK_RETURN);
    EXPECT_EQ(GetLastActivePopup(Main()), Main());
}

TEST_F(DetailsWindowGui, ARightClickOffersToCopyTheXml) {
    StartWithLog(2);
    std::vector<ShownMenuEntry> entries;
    bool asked = false;
    Open([&] {
        const HWND shown = FindWindowW(L"#32768", nullptr);
        if (!asked) {
            asked = true;
            PostMessageW(BoxWindow(Description), WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
            return false;
        }
        if (shown != nullptr && IsWindowVisible(shown)) {
            constexpr UINT MenuHandleMessage = 0x01E1;  // MN_GETHMENU
            entries = EntriesOf(reinterpret_cast<HMENU>(SendMessageW(shown, MenuHandleMessage, 0, 0)));
            EndMenu();
            return false;
        }
        if (entries.empty()) {
            return false;
        }
        SendMessageW(window_, WM_COMMAND, CORVINA_ID_COPY_FROM_DETAILS, 0);
        EXPECT_EQ(ClipboardText(), TextOf(BoxWindow(Xml)));
        EXPECT_EQ(ClipboardText().substr(0, 6), L"<Event");
        Close();
        return true;
    });
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].Text, L"Copy");
    EXPECT_EQ(entries[0].Command, static_cast<UINT>(CORVINA_ID_COPY_FROM_DETAILS));
    EXPECT_TRUE(entries[0].Enabled);
}

TEST_F(DetailsWindowGui, TextsThatLookFormattedStayTexts) {
    StartWithLog(1);
    Open([this] {
        const ui::PaletteBrushes brushes(LightPalette);
        SetDetailsBoxText(BoxWindow(Description), L"{\\rtf1\\b bold}", brushes);
        EXPECT_EQ(TextOf(BoxWindow(Description)), L" {\\rtf1\\b bold}");
        const std::wstring right = L"\x05E9\x05DC\xD800 \x0001 end";
        SetDetailsBoxText(BoxWindow(Description), right, brushes);
        EXPECT_NE(TextOf(BoxWindow(Description)).find(L" end"), std::wstring::npos);
        const DWORD start = GetTickCount();
        SetDetailsBoxText(BoxWindow(Description), std::wstring(3'000'000, L'm'), brushes);
        EXPECT_LT(GetTickCount() - start, 20'000u);
        Close();
        return true;
    });
}

}  // namespace
}  // namespace corvina::test
