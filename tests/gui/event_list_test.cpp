#include <cwchar>
#include <set>

#include "app/command_ids.h"
#include "gui/main_window_fixture.h"
#include "ui/win32/common_controls.h"

namespace corvina::test {
namespace {

using EventList = MainWindowTest;

const std::vector<std::wstring> ApplicationNode = {L"Windows Logs", L"Application"};
const std::vector<std::wstring> SystemNode = {L"Windows Logs", L"System"};

constexpr int RecordIdColumn = 14;

TEST_F(EventList, ASelectedLogIsShownNewestFirstWithItsCount) {
    WriteLog(L"Application", 25);
    WriteLog(L"System", 7);
    WriteSetting(L"Corvina", L"Columns", L"111111111111111111");
    Start();
    SelectNode(ApplicationNode);
    EXPECT_EQ(RowCount(), 25);
    EXPECT_EQ(Caption(), L"Application has 25 events");
    EXPECT_EQ(Cell(0, RecordIdColumn), L"25");
    EXPECT_EQ(Cell(24, RecordIdColumn), L"1");
    EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{0});
    EXPECT_NE(TextOf(Field(1)).find(L"Event Record ID: 25\r\n"), std::wstring::npos);

    SelectNode(SystemNode);
    EXPECT_EQ(RowCount(), 7);
    EXPECT_EQ(Caption(), L"System has 7 events");
    EXPECT_EQ(SelectedNodeCaption(), L"System (7)");
    // Rows that are gone have no texts, whoever asks for them.
    EXPECT_EQ(Cell(20, RecordIdColumn), L"");
}

TEST_F(EventList, TheSelectionFillsTheDetailsOncePerChange) {
    WriteLog(L"Application", 40);
    Start();
    SelectNode(ApplicationNode);
    const HWND list = ListControl();
    SetFocus(list);
    PressKey(VK_DOWN);
    EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{1});
    EXPECT_NE(TextOf(Field(1)).find(L"Event Record ID: 39\r\n"), std::wstring::npos);
    PressKey(VK_END);
    EXPECT_NE(TextOf(Field(1)).find(L"Event Record ID: 1\r\n"), std::wstring::npos);
}

// Reads a shown column from top to bottom and says whether it never falls (or never rises) by the given order.
template <typename Less>
bool IsOrdered(const std::vector<std::wstring>& cells, bool descending, Less less) {
    for (std::size_t i = 1; i < cells.size(); ++i) {
        const bool wrong = descending ? less(cells[i - 1], cells[i]) : less(cells[i], cells[i - 1]);
        if (wrong) {
            return false;
        }
    }
    return true;
}

TEST_F(EventList, EveryHeaderSortsAndEveryClickTurnsTheOrder) {
    WriteLog(L"System", 60);
    WriteSetting(L"Corvina", L"Columns", L"111111111111111111");
    // Narrow enough for all headers to be in reach of the mouse.
    std::wstring widths;
    for (int column = 0; column < 18; ++column) {
        widths += L"28,";
    }
    WriteSetting(L"Corvina", L"ColumnsWidth", widths);
    Start();
    SelectNode(SystemNode);
    const auto byNumber = [](const std::wstring& a, const std::wstring& b) {
        return std::wcstoull(a.c_str(), nullptr, 10) < std::wcstoull(b.c_str(), nullptr, 10);
    };
    const auto byText = [](const std::wstring& a, const std::wstring& b) {
        return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.c_str(), -1, b.c_str(), -1) == CSTR_LESS_THAN;
    };
    const std::set<std::wstring> numbers = {L"Event ID", L"Process ID", L"Thread ID", L"EventRecordID"};
    // Ordered by values that the cells do not show.
    const std::set<std::wstring> hidden = {L"Date", L"Keywords", L"Process code"};

    bool descending = false;
    for (int column = 0; column < 18; ++column) {
        for (int click = 0; click < 2; ++click) {
            ClickHeader(column);
            descending = !descending;
            const std::wstring header = ColumnHeader(column);
            std::vector<std::wstring> cells;
            std::set<std::wstring> records;
            for (int row = 0; row < RowCount(); ++row) {
                cells.push_back(Cell(row, column));
                records.insert(Cell(row, RecordIdColumn));
            }
            EXPECT_EQ(records.size(), 60u) << "rows were lost at column " << column;
            if (hidden.contains(header)) {
                continue;
            }
            EXPECT_TRUE(numbers.contains(header) ? IsOrdered(cells, descending, byNumber)
                                                 : IsOrdered(cells, descending, byText))
                << "column " << column << (descending ? " descending" : " ascending");
        }
    }
    // The pane shows the event of the selected row, whatever has been sorted into it.
    const std::wstring record = Cell(SelectedRowNumbers().at(0), RecordIdColumn);
    EXPECT_NE(TextOf(Field(1)).find(L"Event Record ID: " + record + L"\r\n"), std::wstring::npos);
}

TEST_F(EventList, RemovedRowsLeaveTheViewUntilItIsReloaded) {
    WriteLog(L"Application", 12);
    WriteSetting(L"Corvina", L"Columns", L"111111111111111111");
    Start();
    SelectNode(ApplicationNode);
    SelectRowsOnly({0, 3, 4});
    SendMessageW(Main(), WM_COMMAND, CORVINA_ID_REMOVE_ROWS, 0);
    Pump();
    ASSERT_EQ(RowCount(), 9);
    std::vector<std::wstring> left;
    for (int row = 0; row < 4; ++row) {
        left.push_back(Cell(row, RecordIdColumn));
    }
    EXPECT_EQ(left, (std::vector<std::wstring>{L"11", L"10", L"7", L"6"}));
    EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{0}) << "rows that nobody chose are selected";
    SetFocus(ListControl());
    PressKey(VK_F5);
    EXPECT_EQ(RowCount(), 12);
}

TEST_F(EventList, TypingFindsTheNextRowThatBeginsSo) {
    WriteLog(L"System", 80);
    Start();
    SelectNode(SystemNode);
    int warning = -1;
    for (int row = 1; row < RowCount() && warning < 0; ++row) {
        warning = Cell(row, 0) == L"Warning" ? row : -1;
    }
    ASSERT_GT(warning, 0) << "the sample has no warnings";
    LVFINDINFOW search{};
    search.flags = LVFI_STRING | LVFI_PARTIAL | LVFI_WRAP;
    search.psz = L"warn";
    EXPECT_EQ(SendMessageW(ListControl(), LVM_FINDITEMW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&search)),
              warning);
    search.psz = L"no such type";
    EXPECT_EQ(SendMessageW(ListControl(), LVM_FINDITEMW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&search)),
              -1);
}

TEST_F(EventList, ALogSelectedDuringALoadIsShownInTheEnd) {
    WriteLog(L"Application", 20000);
    WriteLog(L"System", 50);
    Start();
    std::wstring captionBetween;
    WhileModal([this] { SelectNode(ApplicationNode); },
               [&] {
                   captionBetween = Caption();
                   SelectNode(SystemNode);
                   return true;
               });
    ASSERT_NE(captionBetween, L"Application has 20000 events") << "the first load was over too early";
    EXPECT_EQ(SelectedNodeCaption(), L"System (50)");
    EXPECT_EQ(Caption(), L"System has 50 events");
    EXPECT_EQ(RowCount(), 50);
    EXPECT_EQ(SelectedRowNumbers(), std::vector<int>{0});
}

TEST_F(EventList, AWholeLogCanBeSelectedAtOnce) {
    WriteLog(L"Application", 30);
    Start();
    SelectNode(ApplicationNode);
    SetFocus(ListControl());
    BYTE keys[256] = {};
    keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
    SendMessageW(ListControl(), WM_KEYDOWN, 'A', 1);
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);
    Pump();
    EXPECT_EQ(SelectedRowNumbers().size(), 30u);
}

}  // namespace
}  // namespace corvina::test
