#include "app/command_ids.h"
#include "gui/main_window_fixture.h"
#include "ui/win32/common_controls.h"

namespace corvina::test {
namespace {

class ColumnChoice : public MainWindowTest {
  protected:
    // Opens the dialog and presses these of its buttons, one after the other.
    void Choose(const std::vector<int>& buttons) {
        WhileModal([this] { SendMessageW(Main(), WM_COMMAND, CORVINA_ID_COLUMNS, 0); },
                   [&] {
                       const HWND dialog = FindWindowW(L"#32770", L"Columns");
                       if (dialog == nullptr || !IsWindowVisible(dialog)) {
                           return false;
                       }
                       for (const int button : buttons) {
                           applyWasEnabled_ = IsWindowEnabled(GetDlgItem(dialog, IDOK)) != FALSE;
                           SendMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0);
                       }
                       return true;
                   });
    }

    bool applyWasEnabled_ = false;  // just before the last button
};

TEST_F(ColumnChoice, AllColumnsShowTheTextsThatWereNotComputedBefore) {
    WriteLog(L"Application", 9);
    Start();
    SelectNode({L"Windows Logs", L"Application"});
    SendMessageW(ListControl(), LVM_SETCOLUMNWIDTH, 1, 144);
    Choose({CORVINA_ID_SELECT_ALL, IDOK});
    ASSERT_EQ(ColumnCountShown(), 18);
    EXPECT_EQ(ColumnHeader(16), L"Vendor GUID");
    EXPECT_EQ(ColumnHeader(17), L"Security User Id");
    EXPECT_EQ(RowCount(), 9);
    EXPECT_EQ(Cell(0, 14), L"9");
    EXPECT_FALSE(Cell(0, 15).empty());
    EXPECT_EQ(SendMessageW(ListControl(), LVM_GETCOLUMNWIDTH, 1, 0), 144);
    CloseAndDestroy();
    EXPECT_EQ(ReadSetting(L"Corvina", L"Columns"), L"111111111111111111");
}

TEST_F(ColumnChoice, InvertedOrCancelled) {
    Start();
    Choose({CORVINA_ID_INVERT_SELECTION, IDCANCEL});
    EXPECT_EQ(ColumnCountShown(), 6);
    Choose({CORVINA_ID_INVERT_SELECTION, IDOK});
    EXPECT_EQ(ColumnCountShown(), 12);
    EXPECT_EQ(ColumnHeader(0), L"Computer");
    EXPECT_TRUE(applyWasEnabled_);
    // No column at all cannot be applied: nothing would be left to click on.
    Choose({CORVINA_ID_SELECT_ALL, CORVINA_ID_INVERT_SELECTION, IDCANCEL});
    EXPECT_FALSE(applyWasEnabled_);
    EXPECT_EQ(ColumnCountShown(), 12);
}

}  // namespace
}  // namespace corvina::test
