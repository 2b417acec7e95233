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
