// What the copying commands put on the clipboard, and the window of one event within the program.
#include "app/command_ids.h"
#include "application_fixture.h"

namespace corvina::test {
namespace {

const std::wstring Separator = std::wstring(60, L'/') + L"\n\n";

class Copies : public ApplicationTest {
  protected:
    std::wstring Copy(std::uint32_t command, std::vector<std::size_t> rows) {
        window_.Selection = std::move(rows);
        clipboard_.Texts.clear();
        app_->Command(command);
        return clipboard_.Texts.size() == 1 ? clipboard_.Texts[0] : L"(not copied once)";
    }

    // The block that is expected of an event whose details the pane shows.
    std::wstring BlockOfRow(std::size_t row) {
        load_.SelectRow(row);
        const std::wstring expected =
            details_.Left + details_.Right + L"\nBeschreibung:\n" + details_.Description + L"\nEreignis-XML:\n<Event ";
        return expected;
    }
};

TEST_F(Copies, ATableHasTheVisibleColumnsOfTheSelectedRows) {
    AddLog(L"Application", 4);
    settings_.Set(L"Corvina", L"Columns", L"001010000000001000");
    app_->Create();
    Select(L"Windows Logs/Application");
    EXPECT_EQ(Copy(CORVINA_ID_COPY_TABLE, {0, 2}), L"Test-Provider    4    4    \nTest-Provider    2    2    \n");
    // Nothing is selected: the command is not there, and what has been copied before stays.
    EXPECT_EQ(Copy(CORVINA_ID_COPY_TABLE, {}), L"(not copied once)");
    EXPECT_EQ(Copy(CORVINA_ID_COPY_DETAILS, {}), L"(not copied once)");
}

TEST_F(Copies, DetailsAreOneBlockAnEventWithTheSeparatorAlsoBehindTheLast) {
    AddLog(L"Application", 4);
    settings_.Set(L"Options", L"Language", L"1");
    app_->Create();
    Select(L"Windows Logs/Application");
    const std::wstring text = Copy(CORVINA_ID_COPY_DETAILS, {0, 1, 3});
    std::size_t begin = 0;
    for (const std::size_t row : {0U, 1U, 3U}) {
        const std::size_t end = text.find(Separator, begin);
        ASSERT_NE(end, std::wstring::npos) << row;
        const std::wstring block = text.substr(begin, end - begin);
        EXPECT_EQ(block.find(BlockOfRow(row)), 0U) << row;
        EXPECT_TRUE(block.ends_with(L"</Event>\n"));
        begin = end + Separator.size();
    }
    EXPECT_EQ(begin, text.size());
}

TEST_F(Copies, DetailsAreTheseVeryTexts) {
    TestEvent event;
    event.Id = 4624;
    event.Version = 2;
    event.Task = 12544;
    event.Provider = L"Contoso-Logon";
    event.ProviderGuid = L"{1c2d3e4f-0001-0002-0304-05060708090a}";
    event.User = L"S-1-5-18";
    event.Data = {{L"Name", L"a<b>&\"c\" \x05D0"}, {L"", L"second\nline"}};
    ASSERT_TRUE(store_.AddLog(L"localhost", L"Application", {event}, 77));
    ASSERT_TRUE(store_.AddManifest(L"localhost", L"Contoso-Logon",
                                   SimpleManifest("Contoso-Logon", {{4624, "Hello %1.%nSecond line"}})));
    // The headings of description and XML are German in every language.
    settings_.Set(L"Options", L"Language", L"1");
    app_->Create();
    Select(L"Windows Logs/Application");
    EXPECT_EQ(Copy(CORVINA_ID_COPY_DETAILS, {0}),
              L"Vendor name: Contoso-Logon\nVendor GUID: {1C2D3E4F-0001-0002-0304-05060708090A}\nEvent ID: 4624\n"
              L"Version: 2\nLevel: 4\nTask: 12544\nOpcode: Info\nKeywords: 0x80000000000000\n"
              L"Creation time: 03/05/2024 13:07:09.0)\nEvent Record ID: 77\nCorrelation activity ID: \n"
              L"Correlation Related Activity ID: \nExecution process ID: 100\nExecution thread id: 200\n"
              L"Channel: Application\nComputer: TESTPC\nSecurity User Id: S-1-5-18\n\n"
              L"Beschreibung:\nHello a<b>&\"c\" \x05D0.\r\nSecond line\n"
              L"Ereignis-XML:\n"
              L"<Event xmlns='http://schemas.microsoft.com/win/2004/08/events/event'><System>"
              L"<Provider Name='Contoso-Logon' Guid='{1c2d3e4f-0001-0002-0304-05060708090a}'/><EventID>4624</EventID>"
              L"<Version>2</Version><Level>4</Level><Task>12544</Task><Opcode>0</Opcode>"
              L"<Keywords>0x80000000000000</Keywords><TimeCreated SystemTime='2024-03-05T13:07:09.0000000Z'/>"
              L"<EventRecordID>77</EventRecordID><Correlation/><Execution ProcessID='100' ThreadID='200'/>"
              L"<Channel>Application</Channel><Computer>TESTPC</Computer><Security UserID='S-1-5-18'/></System>"
              L"<EventData><Data Name='Name'>a&lt;b&gt;&amp;\"c\" \x05D0</Data><Data>second\nline</Data></EventData>"
              L"</Event>\n" +
                  Separator);
}

TEST_F(Copies, DetailsOfASavedLogComeFromItsFile) {
    const std::filesystem::path file = folder_.Path() / "saved.evtx";
    ASSERT_EQ(WriteLog(file, NumberedEvents(3)), 0U);
    system_.Files = {file.wstring()};
    prompts_.ChosenFile = file.wstring();
    AddLog(L"Application", 1);
    app_->Create();
    app_->Command(CORVINA_ID_OPEN_SAVED_LOG);
    const std::wstring text = Copy(CORVINA_ID_COPY_DETAILS, {0});
    EXPECT_EQ(text.find(BlockOfRow(0)), 0U);
    EXPECT_NE(text.find(L"Event ID: 3\n"), std::wstring::npos);
    EXPECT_EQ(factory_.Api->Queries.back().Path, file.wstring());
}

TEST_F(Copies, EventsThatAreGoneLeaveEmptyBlocksAndALostLogIsReportedOnce) {
    AddLog(L"Application", 3);
    app_->Create();
    Select(L"Windows Logs/Application");
    // The log was cleared meanwhile: the rows are still shown.
    ASSERT_TRUE(store_.AddLog(L"localhost", L"Application", NumberedEvents(1), 50));
    EXPECT_EQ(Copy(CORVINA_ID_COPY_DETAILS, {0, 2}), Separator + Separator);
    EXPECT_TRUE(prompts_.Errors.empty());

    factory_.Api->FailCall(Operation::Query, factory_.Api->Calls(Operation::Query) + 1, 15007);
    EXPECT_EQ(Copy(CORVINA_ID_COPY_DETAILS, {0, 1, 2}), Separator + Separator + Separator);
    EXPECT_EQ(prompts_.Errors.size(), 1U);
}

TEST_F(Copies, TheWindowOfAnEventStepsThroughTheListWithOneFetchAStep) {
    AddLog(L"Application", 3);
    app_->Create();
    Select(L"Windows Logs/Application");
    const std::size_t before = factory_.Api->Queries.size();
    eventWindow_.WhileOpen = [this](DetailsWindowEvents& user) {
        user.NextRequested();
        EXPECT_EQ(window_.Selection, std::vector<std::size_t>{1});
        EXPECT_EQ(details_.Left, eventWindow_.Left) << "the pane below the list follows";
        user.CopyRequested();
    };
    app_->Command(CORVINA_ID_EVENT_PROPERTIES);
    EXPECT_EQ(factory_.Api->Queries.size(), before + 2);
    EXPECT_EQ(clipboard_.Texts.size(), 1U);
    // Closed again: the pane follows the list by itself.
    load_.SelectRow(2);
    EXPECT_EQ(factory_.Api->Queries.size(), before + 3);
    window_.Selection.clear();
    app_->Command(CORVINA_ID_EVENT_PROPERTIES);
    EXPECT_EQ(eventWindow_.Runs, 1);
}

}  // namespace
}  // namespace corvina::test
