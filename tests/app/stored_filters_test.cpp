// Channels with stored filters: the settings name the file, the file has the query.
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/application_fixture.h"
#include "base/path_text.h"
#include "platform/error_codes.h"
#include "query/stored_filter_folder.h"

namespace corvina {
namespace {

constexpr std::size_t EventIdPosition = 4;

// Too long for a value of the settings.
const std::wstring LongQuery =
    L"<QueryList>  <Query Id=\"0\" Path=\"System\">  <Select Path=\"System\">*[System[(EventID=2)]]" +
    std::wstring(300, L' ') + L"</Select>  </Query></QueryList>";

class StoredFiltersTest : public test::ApplicationTest {
  protected:
    StoredFiltersTest() {
        std::filesystem::create_directories(xml_);
        // On every system, the way in which the program itself puts the path together.
        system_.Module = TextOfPath(folder_.Path()) + L"\\Corvina.exe";
        errors_.Texts[error::FileNotFound] = L"It is not there.";
        AddLog(L"System", 3);
    }

    // Starts with that value in the settings and selects the log.
    void ShowSystem(const std::wstring& settingValue) {
        settings_.Set(L"FilterTESTPC", L"System", settingValue);
        app_->Create();
        Select(L"Windows Logs/System");
    }
    // What the box says behind the name of the log, with the folder taken out.
    std::wstring ShownFault() const {
        if (prompts_.Errors.size() != 1 || prompts_.Errors[0].Title != L"Error") {
            return L"(no box)";
        }
        std::wstring text = prompts_.Errors[0].Text;
        const std::wstring expected =
            L"The stored filter of System cannot be used.\r\n\r\n" + TextOfPath(folder_.Path()) + L"\\XML\\";
        return text.starts_with(expected) ? text.substr(expected.size()) : text;
    }
    void ExpectNothingShown() const {
        EXPECT_EQ(load_.RowCount, 0U);
        EXPECT_EQ(load_.ListCaption, L"System has 0 events");
        EXPECT_EQ(details_.Description, L"No events in this view.");
        EXPECT_NE(Node(L"Windows Logs/System"), NodeId::None);
        EXPECT_EQ(settings_.Value(L"FilterTESTPC", L"System").empty(), false) << "the setting stays";
    }

    std::filesystem::path xml_ = folder_.Path() / "XML";
};

TEST_F(StoredFiltersTest, TheQueryOfTheFileRuns) {
    StoredFilterFault fault;
    const auto name =
        StoredFilterFolder(TextOfPath(xml_), locale_).Save({L"Only two", {}, LongQuery, false}, L"", fault);
    ASSERT_TRUE(name);
    ShowSystem(*name);
    EXPECT_EQ(CellTexts(EventIdPosition), std::vector<std::wstring>{L"2"});
    EXPECT_TRUE(prompts_.Errors.empty());
}

TEST_F(StoredFiltersTest, AShortQueryInTheSettingsItselfRuns) {
    ShowSystem(L"<QueryList><Query Path='System'><Select>*[System[EventID=3]]</Select></Query></QueryList>");
    EXPECT_EQ(CellTexts(EventIdPosition), std::vector<std::wstring>{L"3"});
}

TEST_F(StoredFiltersTest, AMissingFileIsReported) {
    ShowSystem(L"gone.xml");
    EXPECT_EQ(ShownFault(), L"gone.xml\r\nIt is not there.");
    ExpectNothingShown();
}

TEST_F(StoredFiltersTest, ABrokenFileIsReportedWithItsPlaceAndKept) {
    std::ofstream(xml_ / "broken.xml", std::ios::binary) << "<StoredFilter>\n<Query>";
    ShowSystem(L"broken.xml");
    EXPECT_EQ(ShownFault(), L"broken.xml\r\nLine 2: Start-end tags mismatch");
    ExpectNothingShown();
    EXPECT_EQ(std::filesystem::file_size(xml_ / "broken.xml"), 22U);
}

TEST_F(StoredFiltersTest, AFileOfAnotherFolderIsRefused) {
    std::ofstream(folder_.Path() / "outside.xml") << "<StoredFilter><Query>&lt;QueryList/></Query></StoredFilter>";
    ShowSystem(L"..\\outside.xml");
    EXPECT_EQ(ShownFault(), L"..\\outside.xml\r\nthis is not the name of a file in the folder of stored filters");
    ExpectNothingShown();
}

}  // namespace
}  // namespace corvina
