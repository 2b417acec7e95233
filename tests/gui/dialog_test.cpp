// The dialog base and its painted controls: states, keys, groups, sizes and colours, in a dialog made for the purpose.
#include "ui/win32/dialog.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <utility>
#include <vector>

#include "support/doubles_dark_mode.h"
#include "ui/win32/common_controls.h"

namespace corvina::ui {
namespace {

enum Identifier : int {
    FirstTab = 100,
    SecondTab,
    FirstBox = 110,
    FirstRadio = 120,
    Field = 130,
    SelectedList,
    List,
    Choice,
    Arrow
};

// Every control there is, in rows below one another.
class SampleDialog : public Dialog {
  public:
    using Dialog::Control;
    std::vector<int> Commands;

    bool Show(HWND owner, Theme& scheme, SIZE client, SIZE smallest) {
        DialogArguments arguments;
        arguments.Owner = owner;
        arguments.Instance = GetModuleHandleW(nullptr);
        arguments.Title = L"Sample";
        arguments.ClientSize = client;
        arguments.SmallestClient = smallest;
        arguments.Scheme = &scheme;
        return RunModal(arguments);
    }

  private:
    void CreateControls() override {
        AddButton(ButtonKind::Tab, L"First", FirstTab, true);
        AddButton(ButtonKind::Tab, L"Se&cond", SecondTab);
        for (int i = 0; i < 4; ++i) {
            AddCheckBox(L"A check box", FirstBox + i, static_cast<CheckState>(i));
        }
        for (int i = 0; i < 3; ++i) {
            AddRadioButton(L"A radio button", FirstRadio + i, i == 0 ? CheckState::Checked : CheckState::Unchecked,
                           i == 0);
        }
        AddControl(L"EDIT", L"a field", WS_TABSTOP | WS_GROUP, Field, WS_EX_CLIENTEDGE);
        AddList(LVS_SHOWSELALWAYS | LVS_NOCOLUMNHEADER, SelectedList);
        LVCOLUMNW column{};
        column.mask = LVCF_WIDTH;
        column.cx = 150;
        SendMessageW(Control(SelectedList), LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
        SendMessageW(Control(SelectedList), LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
        LVITEMW item{};
        item.mask = LVIF_STATE;
        item.state = item.stateMask = LVIS_SELECTED;
        SendMessageW(Control(SelectedList), LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        AddList(0, List);
        const std::vector<std::wstring> entries = {L"one", L"two"};
        AddDropDown(Choice, entries, 1);
        AddButton(ButtonKind::UpArrow, L"Previous", Arrow);
        AddButton(ButtonKind::DefaultPush, L"A button with a long text in some language", IDOK);
        AddButton(ButtonKind::Push, L"Cancel", IDCANCEL);
        SetFocus(Control(FirstBox));
    }
    void Layout(int width, int height) override {
        PlaceEndButtons(width, height, {IDOK, IDCANCEL});
        int top = Pixels(8);
        for (const int row : {static_cast<int>(FirstTab), static_cast<int>(SecondTab), FirstBox + 0, FirstBox + 1,
                              FirstBox + 2, FirstBox + 3, FirstRadio + 0, FirstRadio + 1, FirstRadio + 2,
                              static_cast<int>(Field), static_cast<int>(SelectedList), static_cast<int>(List)}) {
            const int rowHeight = Pixels(row == List ? 60 : 24);
            MoveWindow(Control(row), Pixels(8), top, Pixels(200), rowHeight, TRUE);
            top += rowHeight + Pixels(4);
        }
        PlaceDropDown(Control(Choice), Pixels(8), top, Pixels(200), Pixels(24));
        MoveWindow(Control(Arrow), Pixels(220), top, Pixels(24), Pixels(24), TRUE);
    }
    void CommandReceived(int identifier, UINT code) override {
        if (code == BN_CLICKED) {
            Commands.push_back(identifier);
        }
        if (identifier == IDOK || identifier == IDCANCEL) {
            End(identifier == IDOK);
        }
    }
};

class DialogTest : public testing::TestWithParam<int> {
  protected:
    DialogTest() : scheme_(api_) {
        scheme_.Apply(GetParam());
        const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
        InitCommonControlsEx(&classes);
        owner_ = CreateWindowExW(0, L"STATIC", L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 600, 600, nullptr,
                                 nullptr, nullptr, nullptr);
        SetForegroundWindow(owner_);
    }
    ~DialogTest() override { DestroyWindow(owner_); }

    // Shows the dialog, does something in it when it is there, and closes it. Whether it was accepted.
    bool In(const std::function<void(SampleDialog&)>& action) {
        SampleDialog dialog;
        shown_ = [&] {
            if (dialog.Handle() == nullptr || !IsWindowVisible(dialog.Handle())) {
                return false;
            }
            RedrawWindow(dialog.Handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
            SetForegroundWindow(dialog.Handle());
            SetFocus(dialog.Control(FirstBox));
            action(dialog);
            Pump(dialog.Handle());
            if (IsWindowVisible(dialog.Handle())) {
                PostMessageW(dialog.Handle(), WM_COMMAND, IDCANCEL, 0);
            }
            return true;
        };
        current_ = this;
        const UINT_PTR timer = SetTimer(nullptr, 0, 20, [](HWND, UINT, UINT_PTR id, DWORD) {
            // What is done dispatches messages itself, and must not begin once more from there.
            DialogTest* const waiting = std::exchange(current_, nullptr);
            if (waiting != nullptr && waiting->shown_()) {
                KillTimer(nullptr, id);
            } else {
                current_ = waiting;
            }
        });
        const bool accepted = dialog.Show(owner_, scheme_, client_, smallest_);
        KillTimer(nullptr, timer);
        EXPECT_EQ(current_, nullptr) << "nothing was done in the dialog";
        return accepted;
    }

    // As the modal loop does it.
    static void Pump(HWND dialog) {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (!IsDialogMessageW(dialog, &message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
    }
    static void Press(SampleDialog& dialog, WPARAM key) {
        PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
        PostMessageW(GetFocus(), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
        Pump(dialog.Handle());
    }
    static COLORREF PixelOf(HWND control, int x, int y) {
        UpdateWindow(control);
        const HDC device = GetWindowDC(control);
        const COLORREF color = GetPixel(device, x, y);
        ReleaseDC(control, device);
        return color;
    }
    static std::vector<COLORREF> PixelsOf(HWND control) {
        UpdateWindow(control);
        RECT area{};
        GetWindowRect(control, &area);
        std::vector<COLORREF> colors;
        const HDC device = GetWindowDC(control);
        for (int y = 0; y < area.bottom - area.top; ++y) {
            for (int x = 0; x < 24; ++x) {
                colors.push_back(GetPixel(device, x, y));
            }
        }
        ReleaseDC(control, device);
        return colors;
    }

    static DialogTest* current_;  // timers of a thread have no place for a pointer
    HWND owner_ = nullptr;
    SIZE client_ = {400, 460};
    SIZE smallest_ = {};
    test::FakeDarkMode api_;
    Theme scheme_;
    std::function<bool()> shown_;
};

DialogTest* DialogTest::current_ = nullptr;

TEST_P(DialogTest, TheFourStatesKeepTheirMeaning) {
    In([](SampleDialog& dialog) {
        for (int i = 0; i < 4; ++i) {
            const HWND box = dialog.Control(FirstBox + i);
            EXPECT_EQ(static_cast<int>(GetCheckState(box)), i);
            EXPECT_EQ(IsWindowEnabled(box) != FALSE, i < 2);
            SendMessageW(box, BM_CLICK, 0, 0);
            SendMessageW(box, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
            SendMessageW(box, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
        }
        // The first two were clicked twice, the others do not answer.
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(static_cast<int>(GetCheckState(dialog.Control(FirstBox + i))), i);
        }
        SendMessageW(dialog.Control(FirstBox), BM_CLICK, 0, 0);
        EXPECT_EQ(GetCheckState(dialog.Control(FirstBox)), CheckState::Checked);
        SetCheckState(dialog.Control(FirstBox), CheckState::CheckedDisabled);
        EXPECT_EQ(GetCheckState(dialog.Control(FirstBox)), CheckState::CheckedDisabled);
        for (const int command : dialog.Commands) {
            EXPECT_TRUE(command == FirstBox || command == FirstBox + 1) << command;
        }
    });
}

TEST_P(DialogTest, KeysGoRoundGroupsAndEndTheDialog) {
    EXPECT_TRUE(In([](SampleDialog& dialog) {
        EXPECT_EQ(GetFocus(), dialog.Control(FirstBox));
        Press(dialog, VK_SPACE);
        EXPECT_TRUE(IsChecked(dialog.Control(FirstBox)));
        Press(dialog, VK_TAB);
        EXPECT_EQ(GetFocus(), dialog.Control(FirstBox + 1));
        Press(dialog, VK_TAB);  // past those that are disabled
        EXPECT_EQ(GetFocus(), dialog.Control(FirstRadio));
        Press(dialog, VK_DOWN);
        EXPECT_TRUE(IsChecked(dialog.Control(FirstRadio + 1)));
        EXPECT_FALSE(IsChecked(dialog.Control(FirstRadio)));
        Press(dialog, VK_UP);
        Press(dialog, VK_UP);
        EXPECT_TRUE(IsChecked(dialog.Control(FirstRadio + 2))) << "the arrows stay in the group";
        Press(dialog, VK_TAB);
        EXPECT_EQ(GetFocus(), dialog.Control(Field));
        SetFocus(dialog.Control(FirstTab));
        Press(dialog, VK_RIGHT);
        EXPECT_TRUE(IsChecked(dialog.Control(SecondTab)));
        Press(dialog, VK_RIGHT);
        EXPECT_TRUE(IsChecked(dialog.Control(FirstTab)));
        SetFocus(dialog.Control(Field));
        PostMessageW(GetFocus(), WM_SYSCHAR, L'c', 0x20000001);
        Pump(dialog.Handle());
        EXPECT_TRUE(IsChecked(dialog.Control(SecondTab))) << "the mnemonic was not found";
        dialog.Commands.clear();
        SendMessageW(dialog.Handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(dialog.Control(Arrow)), TRUE);
        Press(dialog, VK_RETURN);
        Press(dialog, VK_SPACE);
        EXPECT_EQ(dialog.Commands, (std::vector<int>{Arrow, Arrow}));
        SendMessageW(dialog.Handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(dialog.Control(Field)), TRUE);
        PostMessageW(GetFocus(), WM_KEYDOWN, VK_RETURN, 1);
    }));
    EXPECT_FALSE(In([](SampleDialog&) { PostMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, 1); }));
}

TEST_P(DialogTest, ScreenReadersFindTheControlsOfTheSystem) {
    In([](SampleDialog& dialog) {
        const std::vector<std::pair<int, LONG_PTR>> types = {
            {FirstTab, BS_AUTORADIOBUTTON}, {FirstBox, BS_AUTOCHECKBOX}, {FirstRadio, BS_AUTORADIOBUTTON},
            {Arrow, BS_PUSHBUTTON},         {IDOK, BS_DEFPUSHBUTTON},    {IDCANCEL, BS_PUSHBUTTON}};
        for (const auto& [identifier, type] : types) {
            const HWND control = dialog.Control(identifier);
            wchar_t text[64] = {};
            GetClassNameW(control, text, 64);
            EXPECT_STREQ(text, L"Button");
            EXPECT_EQ(GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK, type) << identifier;
            EXPECT_GT(GetWindowTextW(control, text, 64), 0) << identifier;
        }
    });
}

TEST_P(DialogTest, EverythingHasTheColoursOfTheScheme) {
    In([this](SampleDialog& dialog) {
        const Palette& colors = scheme_.Colors();
        EXPECT_EQ(PixelOf(dialog.Control(FirstBox), 0, 0), colors.WindowFill);
        EXPECT_EQ(PixelOf(dialog.Control(Field), 100, 10), colors.ControlBack);
        EXPECT_EQ(PixelOf(dialog.Control(List), 100, 50), colors.ControlBack);
        const HDC device = GetDC(dialog.Handle());
        EXPECT_EQ(GetPixel(device, 395, 5), colors.WindowFill);
        ReleaseDC(dialog.Handle(), device);
        if (scheme_.IsDark()) {
            EXPECT_EQ(PixelOf(dialog.Control(SelectedList), 80, 10), DarkSelectionWithoutFocus);
            EXPECT_LT(GetRValue(PixelOf(dialog.Control(List), 100, 10)), 100) << "the header is light";
            // No edge, arrow or box in the light colours of the system; texts are the only light thing.
            for (const int identifier : {static_cast<int>(Field), static_cast<int>(List)}) {
                EXPECT_NE(PixelOf(dialog.Control(identifier), 0, 12), GetSysColor(COLOR_3DSHADOW));
                EXPECT_LT(GetRValue(PixelOf(dialog.Control(identifier), 1, 12)), 100);
            }
            EXPECT_LT(GetRValue(PixelOf(dialog.Control(Choice), 190, 4)), 100);
        }
        std::set<std::vector<COLORREF>> looks;
        for (int i = 0; i < 4; ++i) {
            looks.insert(PixelsOf(dialog.Control(FirstBox + i)));
        }
        EXPECT_EQ(looks.size(), 4u) << "the states of a check box cannot be told apart";
    });
}

TEST_P(DialogTest, TheMouseAndAPressChangeAButton) {
    In([](SampleDialog& dialog) {
        const HWND button = dialog.Control(IDCANCEL);
        const COLORREF plain = PixelOf(button, 0, 10);
        SendMessageW(button, WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
        const COLORREF hot = PixelOf(button, 0, 10);
        EXPECT_NE(hot, plain);
        const COLORREF face = PixelOf(button, 8, 4);
        SendMessageW(button, BM_SETSTATE, TRUE, 0);
        EXPECT_NE(PixelOf(button, 8, 4), face);
        SendMessageW(button, BM_SETSTATE, FALSE, 0);
        SendMessageW(button, WM_MOUSELEAVE, 0, 0);
        EXPECT_EQ(PixelOf(button, 0, 10), plain);
    });
}

TEST_P(DialogTest, TextsFitAtEveryResolution) {
    In([](SampleDialog& dialog) {
        for (const int dots : {96, 144, 192}) {
            RECT place{0, 0, 420 * dots / 96, 510 * dots / 96};
            SendMessageW(dialog.Handle(), WM_DPICHANGED, static_cast<WPARAM>(MAKELONG(dots, dots)),
                         reinterpret_cast<LPARAM>(&place));
            RECT client{};
            GetClientRect(dialog.Handle(), &client);
            for (const int identifier : {IDOK, IDCANCEL, FirstBox + 0, FirstRadio + 0, static_cast<int>(FirstTab)}) {
                RECT button{};
                GetWindowRect(dialog.Control(identifier), &button);
                EXPECT_LE(ButtonWidthOf(dialog.Control(identifier)), button.right - button.left) << identifier;
                MapWindowPoints(nullptr, dialog.Handle(), reinterpret_cast<POINT*>(&button), 2);
                EXPECT_LE(button.bottom, client.bottom);
                EXPECT_GE(button.left, 0) << identifier;
            }
            LOGFONTW font{};
            GetObjectW(reinterpret_cast<HGDIOBJ>(SendMessageW(dialog.Control(FirstBox), WM_GETFONT, 0, 0)),
                       sizeof(font), &font);
            EXPECT_EQ(font.lfHeight, 16 * dots / 96);
        }
    });
}

TEST_P(DialogTest, OneThatCanBeResizedFitsOnTheScreen) {
    client_ = {10'000, 10'000};
    smallest_ = {400, 460};
    In([](SampleDialog& dialog) {
        MONITORINFO monitor{};
        monitor.cbSize = sizeof(monitor);
        GetMonitorInfoW(MonitorFromWindow(dialog.Handle(), MONITOR_DEFAULTTONEAREST), &monitor);
        RECT place{};
        GetWindowRect(dialog.Handle(), &place);
        EXPECT_TRUE(EqualRect(&place, &monitor.rcWork))
            << place.left << ' ' << place.top << ' ' << place.right << ' ' << place.bottom;
        GetWindowRect(dialog.Control(IDCANCEL), &place);
        EXPECT_LT(place.bottom, monitor.rcWork.bottom);
        EXPECT_LT(place.right, monitor.rcWork.right);
    });
}

TEST_P(DialogTest, EveryPaintedControlShowsWhereTheMouseIs) {
    In([](SampleDialog& dialog) {
        SetFocus(dialog.Control(Field));  // what is disabled below would lose it
        for (const int identifier : {static_cast<int>(FirstTab), FirstBox + 0, FirstRadio + 1, static_cast<int>(Choice),
                                     static_cast<int>(Arrow), IDOK}) {
            const HWND control = dialog.Control(identifier);
            const auto plain = PixelsOf(control);
            SendMessageW(control, WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
            const auto hot = PixelsOf(control);
            EXPECT_NE(hot, plain) << identifier;
            SendMessageW(control, WM_MOUSELEAVE, 0, 0);
            EXPECT_EQ(PixelsOf(control), plain) << identifier;

            SendMessageW(control, WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
            EnableWindow(control, FALSE);
            const auto disabled = PixelsOf(control);
            EXPECT_TRUE(disabled != plain && disabled != hot) << identifier;
            EnableWindow(control, TRUE);
            EXPECT_EQ(PixelsOf(control), plain) << identifier << " kept the mouse while it was disabled";
        }
    });
}

INSTANTIATE_TEST_SUITE_P(BothSchemes, DialogTest, testing::Values(0, 1),
                         [](const auto& mode) { return mode.param == 0 ? "White" : "Black"; });

class FollowingDialogTest : public DialogTest {};

TEST_P(FollowingDialogTest, AnOpenDialogFollowsTheSystem) {
    api_.HaveAll();
    scheme_.System().Init({10, 0, 19045});
    scheme_.Apply(2);
    In([this](SampleDialog& dialog) {
        EXPECT_EQ(PixelOf(dialog.Control(FirstBox), 0, 0), LightPalette.WindowFill);
        api_.AsksForDark = true;
        SendMessageW(dialog.Handle(), WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"Policy"));
        EXPECT_EQ(PixelOf(dialog.Control(FirstBox), 0, 0), LightPalette.WindowFill);
        SendMessageW(dialog.Handle(), WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"immersiveColorSet"));
        EXPECT_EQ(PixelOf(dialog.Control(FirstBox), 0, 0), DarkPalette.WindowFill);
        EXPECT_EQ(PixelOf(dialog.Control(Field), 100, 10), DarkPalette.ControlBack);
        EXPECT_EQ(PixelOf(dialog.Control(List), 100, 50), DarkPalette.ControlBack);
        EXPECT_TRUE(std::ranges::count(api_.Calls, L"AllowDarkModeForWindow 1") > 10) << "controls were not marked";
    });
}

INSTANTIATE_TEST_SUITE_P(System, FollowingDialogTest, testing::Values(2));

}  // namespace
}  // namespace corvina::ui
