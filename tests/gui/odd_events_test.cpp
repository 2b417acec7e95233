// The window of one event over logs that are odd or change while it is open, and at odd places.
#include <filesystem>
#include <string>
#include <vector>

#include "app/command_ids.h"
#include "gui/main_window_fixture.h"
#include "support/event_log_fixture.h"

namespace corvina::test {
namespace {

constexpr WPARAM EnterKey = VK_RETURN;

class OddEvents : public MainWindowTest {
  protected:
    void StartWith(std::vector<TestEvent> events, std::uint64_t firstRecordId = 1) {
        const TestStore store(Store);
        ASSERT_TRUE(store.AddLog(L"localhost", L"Application", std::move(events), firstRecordId));
        Start();
        SelectNode({L"Windows Logs", L"Application"});
        SetFocus(ListControl());
    }

    // Opens the window of the selected event, does something in it and closes it.
    void InWindow(const std::function<void()>& action) {
        WhileModal([this] { PressKey(EnterKey); },
                   [&] {
                       window_ = GetLastActivePopup(Main());
                       if (window_ == Main() || !IsWindowVisible(window_)) {
                           return false;
                       }
                       action();
                       SendMessageW(window_, WM_CLOSE, 0, 0);
                       return true;
                   });
        EXPECT_TRUE(IsWindowEnabled(Main()));
    }
    void Press(const wchar_t* button) const {
        const HWND found = FindWindowExW(window_, nullptr, L"BUTTON", button);
        ASSERT_NE(found, nullptr) << testing::PrintToString(button);
        SendMessageW(found, BM_CLICK, 0, 0);
    }
    // The text of the first, second ... box: both properties, the description, the XML.
    std::wstring BoxText(int index) const {
        std::vector<HWND> boxes;
        for (HWND child = GetWindow(window_, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
            wchar_t name[32] = {};
            GetClassNameW(child, name, 32);
            if (_wcsicmp(name, L"BUTTON") != 0) {
                boxes.push_back(child);
            }
        }
        return static_cast<std::size_t>(index) < boxes.size() ? TextOf(boxes[static_cast<std::size_t>(index)])
                                                              : L"(no such box)";
    }
    RECT Place() const {
        RECT place{};
        GetWindowRect(window_, &place);
        return place;
    }

    HWND window_ = nullptr;
};

TEST_F(OddEvents, AreShownWhateverTheirTextsHold) {
    std::vector<TestEvent> events = NumberedEvents(4);
    events[0].Provider = L"Large";
    ASSERT_TRUE(TestStore(Store).AddManifest(L"localhost", L"Large",
                                             SimpleManifest("Large", {{1, std::string(1'500'000, 'm') + " end"}})));
    events[1].Data = {{L"Half", L"before \xD83D after"}, {L"Whole", L"\xD83D\xDE00"}};
    events[2].Data = {{L"Hebrew",
                       L"\x05E9\x05DC\x05D5\x05DD \x202E"
                       L"abc\x202C tail"}};
    events[3].Data = {{L"Control", L"bell\x07 tab\tend"}, {L"Format", L"%s {\\rtf1} &amp; 100%n"}};
    StartWith(std::move(events));
    InWindow([this] {
        // No provider is known here: the data stands below the note that says so.
        EXPECT_NE(BoxText(2).find(L"tab\tend"), std::wstring::npos);
        EXPECT_NE(BoxText(2).find(L"Format: %s {\\rtf1} &amp; 100%n"), std::wstring::npos);
        Press(L"Next Element");
        EXPECT_NE(BoxText(2).find(L"Hebrew: \x05E9\x05DC\x05D5\x05DD"), std::wstring::npos);
        EXPECT_NE(BoxText(2).find(L"tail"), std::wstring::npos);
        Press(L"Next Element");
        EXPECT_NE(BoxText(2).find(L"after"), std::wstring::npos);
        EXPECT_NE(BoxText(2).find(L"Whole: \xD83D\xDE00"), std::wstring::npos);
        const DWORD start = GetTickCount();
        Press(L"Next Element");
        EXPECT_LT(GetTickCount() - start, 60'000u);
        EXPECT_NE(BoxText(1).find(L"Event Record ID: 1\r\n"), std::wstring::npos);
        EXPECT_GT(BoxText(2).size(), 100'000u);
        EXPECT_TRUE(BoxText(2).ends_with(L"m\r\n...")) << "it does not say that there is more";
    });
}

TEST_F(OddEvents, AreCopiedAsXmlFromEitherTab) {
    std::vector<TestEvent> events = NumberedEvents(2);
    events[1].Data = {{L"Text", L"\x05E9 <tag> \xD83D\xDE00"}};
    StartWith(std::move(events));
    InWindow([this] {
        for (const wchar_t* tab : {L"Details", L"General"}) {
            WindowsClipboard().PutText(L"before");
            Press(tab);
            SendMessageW(window_, WM_COMMAND, CORVINA_ID_COPY_FROM_DETAILS, 0);
            EXPECT_EQ(ClipboardText(), BoxText(3));
            EXPECT_NE(ClipboardText().find(L"\x05E9 &lt;tag&gt; \xD83D\xDE00</Data>\r\n"), std::wstring::npos);
        }
    });
}

TEST_F(OddEvents, WithRecordIdentifiersThatCannotBeAskedForLeaveTheDescriptionEmpty) {
    StartWith(NumberedEvents(2), 2147483647);
    InWindow([this] {
        EXPECT_NE(TextOf(window_).find(L"2147483648"), std::wstring::npos);
        EXPECT_EQ(BoxText(2), L"");
        Press(L"Next Element");
        EXPECT_NE(BoxText(1).find(L"Event Record ID: 2147483647\r\n"), std::wstring::npos);
    });
    EXPECT_TRUE(Boxes.Shown.empty());
}

TEST_F(OddEvents, OfALogThatIsClearedOrGoesMeanwhileLeaveAWindowThatWorks) {
    StartWith(NumberedEvents(5));
    const TestStore store(Store);
    InWindow([&] {
        ASSERT_TRUE(store.AddLog(L"localhost", L"Application", {}, 6));
        Press(L"Next Element");
        EXPECT_EQ(BoxText(2), L"");
        EXPECT_TRUE(Boxes.Shown.empty());

        std::error_code failure;
        ASSERT_TRUE(std::filesystem::remove(store.LogPath(L"localhost", L"Application"), failure));
        Press(L"Next Element");
        ASSERT_EQ(Boxes.Shown.size(), 1u);
        // Not every system has a text for this error; then its number stands alone.
        EXPECT_TRUE(Boxes.Shown[0].starts_with(L"Channel was not found\r\n") || Boxes.Shown[0] == L"Error: 0x3a9f")
            << testing::PrintToString(Boxes.Shown[0]);
        EXPECT_TRUE(IsWindow(window_));
        Press(L"Previous item");
        EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{1});
    });
}

// Off all screens is a place like any other, and returns as it was.
TEST_F(OddEvents, StandWhereTheSettingsSayAtAnyNumbers) {
    StartWith(NumberedEvents(1));
    for (const wchar_t* key : {L"MainWindowLeft", L"MainWindowTop"}) {
        WriteSetting(L"CorvinaDetails", key, L"-5000");
    }
    InWindow([this] {
        EXPECT_EQ(Place().left, -5000);
        EXPECT_EQ(Place().top, -5000);
        EXPECT_EQ(Place().right - Place().left, 800);
    });
    EXPECT_EQ(ReadSetting(L"CorvinaDetails", L"MainWindowLeft"), L"-5000");
    EXPECT_EQ(ReadSetting(L"CorvinaDetails", L"MainWindowTop"), L"-5000");
    for (const wchar_t* number : {L"2147483647", L"-2147483648", L"99999999999999999999", L"0", L"wide"}) {
        for (const wchar_t* key : {L"MainWindowLeft", L"MainWindowTop", L"MainWindowWidth", L"MainWindowHeigth"}) {
            WriteSetting(L"CorvinaDetails", key, number);
        }
        InWindow([this] {
            EXPECT_NE(BoxText(0).find(L"Event ID: 1\r\n"), std::wstring::npos);
            Press(L"Details");
        });
    }
}

}  // namespace
}  // namespace corvina::test
