#include <filesystem>
#include <fstream>

#include "gui/main_window_fixture.h"
#include "query/stored_filter_folder.h"

namespace corvina::test {
namespace {

class StoredFilters : public MainWindowTest {
  protected:
    StoredFilters() {
        std::filesystem::create_directories(Xml);
        WriteLog(L"System", 7);
    }
    void FilterSystemWith(std::wstring_view settingValue) {
        WriteSetting(L"Filter" + WindowsSystemServices().ComputerName(), L"System", settingValue);
        Start();
        SelectNode({L"Windows Logs", L"System"});
    }

    const std::filesystem::path Xml = Folder / L"XML";
};

// The name goes through the system's own settings file and file names, so it has letters of several scripts.
TEST_F(StoredFilters, AChannelShowsWhatTheFileInItsSettingSelects) {
    const WindowsLocale locale;
    const StoredFilterFolder files(Xml.wstring(), locale);
    StoredFilter filter;
    filter.Name = L"\u00DCber \u4E2D\u6587: \U0001F600";
    filter.Query = L"<QueryList><Query Path='System'><Select>*[System[EventRecordID&gt;=" + std::wstring(300, L' ') +
                   L"6]]</Select></Query></QueryList>";
    StoredFilterFault fault;
    ASSERT_EQ(files.Save(filter, L"", fault), L"\u00DCber \u4E2D\u6587_ \U0001F600.xml");
    const auto second = files.Save(filter, L"", fault);
    ASSERT_EQ(second, L"\u00DCber \u4E2D\u6587_ \U0001F600 2.xml");
    FilterSystemWith(*second);
    EXPECT_EQ(RowCount(), 2);
    EXPECT_EQ(Caption(), L"System has 2 events");
    EXPECT_TRUE(Boxes.Shown.empty());
}

TEST_F(StoredFilters, AFileThatCannotBeReadIsReportedAndF5ShowsTheChannel) {
    std::ofstream(Xml / L"broken.xml") << "<StoredFilter>\n<Name>";
    FilterSystemWith(L"broken.xml");
    ASSERT_EQ(Boxes.Shown.size(), 1u);
    EXPECT_NE(Boxes.Shown[0].find(L"\\XML\\broken.xml\r\nLine 2: "), std::wstring::npos) << Boxes.Shown[0];
    EXPECT_EQ(RowCount(), 0);
    EXPECT_EQ(Caption(), L"System has 0 events");
    PressKey(VK_F5);
    EXPECT_EQ(RowCount(), 7);
}

}  // namespace
}  // namespace corvina::test
