// Copies arrive on the system's clipboard.
#include "app/command_ids.h"
#include "gui/main_window_fixture.h"

namespace corvina::test {
namespace {

class GuiCopies : public MainWindowTest {};

TEST_F(GuiCopies, TableAndDetailsOfTheSelectedRows) {
    WriteLog(L"Application", 5);
    Start();
    SelectNode({L"Windows Logs", L"Application"});
    SelectRowsOnly({1, 3});
    SendMessageW(Main(), WM_COMMAND, CORVINA_ID_COPY_TABLE, 0);
    std::wstring expected;
    for (const int row : {1, 3}) {
        for (int column = 0; column < ColumnCountShown(); ++column) {
            expected += Cell(row, column) + L"    ";
        }
        expected += L"\n";
    }
    EXPECT_EQ(ClipboardText(), expected);

    SendMessageW(Main(), WM_COMMAND, CORVINA_ID_COPY_DETAILS, 0);
    const std::wstring details = ClipboardText();
    EXPECT_EQ(details.find(L"Vendor name: " + Cell(1, 2) + L"\n"), 0u);
    EXPECT_TRUE(details.ends_with(L"</Event>\n" + std::wstring(60, L'/') + L"\n\n"));
}

// Another thread's window that holds the clipboard, as another program's would.
class ClipboardHolder {
  public:
    ClipboardHolder() : thread_(CreateThread(nullptr, 0, &ClipboardHolder::Hold, this, 0, nullptr)) {
        WaitForSingleObject(held_, 20'000);
    }
    ~ClipboardHolder() {
        SetEvent(released_);
        WaitForSingleObject(thread_, 20'000);
        for (const HANDLE handle : {thread_, held_, released_}) {
            CloseHandle(handle);
        }
    }
    ClipboardHolder(const ClipboardHolder&) = delete;
    ClipboardHolder& operator=(const ClipboardHolder&) = delete;

    bool IsHeld() const { return isHeld_; }

  private:
    static DWORD WINAPI Hold(void* argument) {
        auto* self = static_cast<ClipboardHolder*>(argument);
        const HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
        self->isHeld_ = OpenClipboard(window) != FALSE;
        SetEvent(self->held_);
        WaitForSingleObject(self->released_, 20'000);
        CloseClipboard();
        DestroyWindow(window);
        return 0;
    }

    bool isHeld_ = false;
    HANDLE held_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE released_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE thread_;
};

TEST_F(GuiCopies, AClipboardThatIsHeldKeepsItsTextAndLargeTextsArriveWhole) {
    WindowsClipboard clipboard;
    const std::wstring large(3'000'000, L'\x263A');
    clipboard.PutText(large);
    EXPECT_TRUE(ClipboardText() == large);
    {
        const ClipboardHolder holder;
        ASSERT_TRUE(holder.IsHeld());
        clipboard.PutText(L"lost");
    }
    EXPECT_TRUE(ClipboardText() == large);
    clipboard.PutText(std::wstring_view(L"a\0b", 3));
    EXPECT_EQ(ClipboardText(), L"a b");
}

}  // namespace
}  // namespace corvina::test
