// The window of one event: what it shows, its steps, its copy and its place.
#include "details/details_window.h"

#include <gtest/gtest.h>

#include "support/log_machinery.h"

namespace corvina::test {
namespace {

class TestSelection final : public EventSelection {
  public:
    std::optional<std::size_t> SelectedRow() const override { return Row; }
    void SelectOnly(std::size_t row) override {
        Row = row;
        ++Changes;
    }

    std::optional<std::size_t> Row;
    int Changes = 0;
};

class DetailsWindowTest : public ::testing::Test, public StoreMachinery {
  protected:
    void Load(std::vector<TestEvent> events, std::uint64_t firstRecordId = 1) {
        ASSERT_TRUE(Files.AddLog(L"localhost", L"Application", std::move(events), firstRecordId));
        Start();
        details_ = std::make_unique<EventDetails>(EventDetails::Parts{Logic->Session, Logic->Errors, Logic->Messages,
                                                                      Logic->Descriptions, Settings, Language, Debug});
        rows_ = std::make_unique<RowDetails>(*details_, Logic->Rows, Logic->Loader);
        pane_ = std::make_unique<DetailsPane>(*rows_, paneView_);
        window_ = std::make_unique<DetailsWindow>(
            DetailsWindow::Parts{*pane_, Logic->Rows, selection_, view_, Settings, Language, copies_});
        Logic->Select(L"Windows Logs/Application");
        selection_.Row = 0;
    }
    void TearDown() override { EXPECT_EQ(End(), 0U) << "handles were left open"; }

    // Opens the window and plays its user.
    void Open(const std::function<void(DetailsWindowEvents&)>& whileOpen = {}) {
        view_.WhileOpen = whileOpen;
        window_->Open();
    }

    RecordingDetailsPane paneView_;
    RecordingDetailsWindow view_;
    TestSelection selection_;
    RecordingClipboard copies_;
    std::unique_ptr<EventDetails> details_;
    std::unique_ptr<RowDetails> rows_;
    std::unique_ptr<DetailsPane> pane_;
    std::unique_ptr<DetailsWindow> window_;
};

TEST_F(DetailsWindowTest, OpensOnItsFirstTabWithAllOfTheSelectedEvent) {
    Load(NumberedEvents(3));
    selection_.Row = 1;
    const std::size_t queries = Api->Queries.size();
    Open([this](DetailsWindowEvents&) {
        EXPECT_TRUE(window_->IsOpen());
        window_->Open();  // once more, from the list's menu: there is one window only
    });
    EXPECT_EQ(view_.Runs, 1);
    EXPECT_EQ(Api->Queries.size(), queries + 1) << "pane and window share one fetch";
    EXPECT_EQ(view_.Captions, (std::vector<std::wstring>{L"General", L"Details", L"Previous item", L"Next Element"}));
    EXPECT_EQ(view_.Title, L"Properties - Event ID 2, Test-Provider, Event Record ID 2");
    EXPECT_EQ(view_.Tab, DetailsTab::General);
    EXPECT_TRUE(view_.IsDescriptionFocused);
    EXPECT_NE(view_.Left.find(L"Event ID: 2\n"), std::wstring::npos);
    EXPECT_NE(view_.Right.find(L"Event Record ID: 2\n"), std::wstring::npos);
    EXPECT_EQ(view_.Description.find(L"The label for the event ID ( 2 )"), 0U);
    EXPECT_NE(view_.Xml.find(L"\n    <EventRecordID>2</EventRecordID>\n"), std::wstring::npos);
    EXPECT_EQ(paneView_.Left, view_.Left);
    EXPECT_EQ(paneView_.Xml, view_.Xml);
    EXPECT_FALSE(window_->IsOpen());
}

TEST_F(DetailsWindowTest, StepsGoToBothEndsAndNoFurther) {
    Load(NumberedEvents(3));
    Open([this](DetailsWindowEvents& user) {
        EXPECT_FALSE(view_.HasPrevious);
        EXPECT_TRUE(view_.HasNext);
        user.PreviousRequested();
        EXPECT_EQ(selection_.Changes, 0);
        user.TabChosen(DetailsTab::Details);
        user.NextRequested();
        EXPECT_TRUE(view_.HasPrevious && view_.HasNext);
        EXPECT_EQ(view_.Tab, DetailsTab::Details) << "a step stays on its tab";
        user.NextRequested();
        EXPECT_EQ(view_.Title, L"Properties - Event ID 1, Test-Provider, Event Record ID 1");
        EXPECT_NE(view_.Left.find(L"Event ID: 1\n"), std::wstring::npos);
        EXPECT_FALSE(view_.HasNext);
        user.NextRequested();
        EXPECT_EQ(selection_.Row, 2U);
        EXPECT_EQ(selection_.Changes, 2);
        user.PreviousRequested();
        EXPECT_EQ(selection_.Row, 1U);

        selection_.Row.reset();
        user.NextRequested();
        user.PreviousRequested();
        EXPECT_EQ(selection_.Changes, 3) << "without a selection there is no place to step from";
    });
    Open();
    EXPECT_EQ(view_.Tab, DetailsTab::General) << "opening always begins on the first tab";
    EXPECT_EQ(view_.Left, L"Unknown Event");
    EXPECT_EQ(view_.Right, L"Unknown Event");
}

TEST_F(DetailsWindowTest, OneEventHasNoNeighbours) {
    Load(NumberedEvents(1));
    Open([this](DetailsWindowEvents& user) {
        user.NextRequested();
        user.PreviousRequested();
        EXPECT_EQ(selection_.Changes, 0);
        EXPECT_FALSE(view_.HasPrevious || view_.HasNext);
    });
}

TEST_F(DetailsWindowTest, CopyTakesTheXmlOnEitherTab) {
    Load(NumberedEvents(2));
    Open([this](DetailsWindowEvents& user) {
        user.CopyRequested();
        user.TabChosen(DetailsTab::Details);
        user.CopyRequested();
        user.TabChosen(DetailsTab::General);
        user.CopyRequested();
    });
    ASSERT_EQ(copies_.Texts.size(), 3U);
    std::wstring expected;
    for (const wchar_t character : view_.Xml) {
        expected += character == L'\n' ? std::wstring(L"\r\n") : std::wstring(1, character);
    }
    for (const std::wstring& text : copies_.Texts) {
        EXPECT_EQ(text, expected);
    }
    // With the window closed no tab is selected.
    EXPECT_EQ(window_->CopiedText().find(L"Vendor name: Test-Provider\r\n"), 0U);
    EXPECT_EQ(window_->CopiedText().find(L"<Event"), std::wstring::npos);
}

TEST_F(DetailsWindowTest, AnyTextsOfAnEventAreShown) {
    std::vector<TestEvent> events = NumberedEvents(2);
    events[0].Data = {{L"Bytes", L"a\x01\x1F z"},
                      {L"Half", std::wstring(1, static_cast<wchar_t>(0xD800)) + L"x"},
                      {L"Hebrew", L"\x05E9\x05DC\x202E"}};
    events[1].Provider = L"Large";
    ASSERT_TRUE(Files.AddManifest(L"localhost", L"Large",
                                  SimpleManifest("Large", {{2, std::string(2'000'000, 'm') + " end"}})));
    Load(std::move(events));
    Open([this](DetailsWindowEvents& user) {
        EXPECT_EQ(view_.Description.size(), 2'000'004U);
        EXPECT_TRUE(view_.Description.ends_with(L"m end"));
        user.NextRequested();
        EXPECT_NE(view_.Description.find(L"Hebrew: \x05E9\x05DC\x202E\n"), std::wstring::npos);
        EXPECT_NE(view_.Description.find(L"Half: "), std::wstring::npos);
        EXPECT_NE(view_.Xml.find(L"\x05E9\x05DC\x202E</Data>\n"), std::wstring::npos);
        user.CopyRequested();
    });
    EXPECT_EQ(copies_.Texts.size(), 1U);
}

TEST_F(DetailsWindowTest, AnEventWithoutAMessageShowsItsData) {
    std::vector<TestEvent> events = NumberedEvents(2);
    for (TestEvent& event : events) {
        event.Provider = L"Known";
        event.Data = {{L"Path", L"C:\\x"}};
    }
    events[0].Data.clear();
    ASSERT_TRUE(Files.AddManifest(L"localhost", L"Known", SimpleManifest("Known", {{77, "Another event"}})));
    Load(std::move(events));
    Open([this](DetailsWindowEvents& user) {
        EXPECT_EQ(view_.Description.find(L"The label for the event ID ( 2 ) in the source ( Known )"), 0U);
        EXPECT_TRUE(view_.Description.ends_with(L"\n\nPath: C:\\x\n")) << testing::PrintToString(view_.Description);
        user.NextRequested();
        EXPECT_EQ(view_.Description.find(L"The label for the event ID ( 1 )"), 0U);
        EXPECT_EQ(view_.Description.find(L"Path"), std::wstring::npos);
        EXPECT_NE(view_.Left.find(L"Vendor GUID: NULL\n"), std::wstring::npos);
    });
}

TEST_F(DetailsWindowTest, RecordIdentifiersThatCannotBeAskedForFindNothing) {
    Load(NumberedEvents(2), 2147483647);
    Open([this](DetailsWindowEvents& user) {
        // The title is the row's; the event itself is asked for by a negative number.
        EXPECT_EQ(view_.Title, L"Properties - Event ID 2, Test-Provider, Event Record ID 2147483648");
        EXPECT_EQ(view_.Description, L"");
        EXPECT_EQ(view_.Xml, L"");
        user.NextRequested();
        EXPECT_NE(view_.Right.find(L"Event Record ID: 2147483647\n"), std::wstring::npos);
    });
}

TEST_F(DetailsWindowTest, ALogThatChangesMeanwhileLeavesNoStaleDescription) {
    Load(NumberedEvents(3));
    Open([this](DetailsWindowEvents& user) {
        const std::wstring left = view_.Left;
        ASSERT_TRUE(Files.AddLog(L"localhost", L"Application", NumberedEvents(1), 70));
        user.NextRequested();
        EXPECT_EQ(view_.Description, L"");
        EXPECT_EQ(view_.Left, left);
        EXPECT_TRUE(Boxes.Errors.empty());

        // The channel goes as well.
        SystemTexts.Texts[15007] = L"channel text";
        std::filesystem::remove(Files.LogPath(L"localhost", L"Application"));
        user.PreviousRequested();
        ASSERT_EQ(Boxes.Errors.size(), 1U);
        EXPECT_EQ(Boxes.Errors[0].Text, L"Channel was not found\r\nchannel text");
        EXPECT_EQ(Boxes.Errors[0].Title, L"Error");
        EXPECT_EQ(view_.Left, left);
        user.CopyRequested();
    });
}

}  // namespace
}  // namespace corvina::test
