#include "gui/main_window_fixture.h"

#include <system_error>

#include "embedded/samples/sample_store.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/window_text.h"
#include "wevtapi_double/double_access.h"

namespace corvina::test {
namespace {

constexpr UINT MenuHandleMessage = 0x01E1;  // MN_GETHMENU: the menu that a menu window shows
const std::wstring WindowClass = L"CorvinaMainWindowUnderTest";

// What the timer of WhileModal runs, and how often it still may; timers of a thread have no place for a pointer.
std::function<bool()>* modalAction = nullptr;
int triesLeft = 0;

void CALLBACK RunModalAction(HWND, UINT, UINT_PTR timer, DWORD) {
    if (modalAction == nullptr) {
        return;
    }
    if (--triesLeft == 0) {
        // Something else than expected is open; the test fails instead of waiting for ever.
        KillTimer(nullptr, timer);
        EndMenu();
        PostMessageW(GetActiveWindow(), WM_COMMAND, IDCANCEL, 0);
    } else if ((*modalAction)()) {
        modalAction = nullptr;
        KillTimer(nullptr, timer);
    }
}

std::filesystem::path NewFolder() {
    static int number = 0;
    std::error_code ignored;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path(ignored) /
        (L"corvina-gui-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++number));
    std::filesystem::create_directories(folder, ignored);
    return folder;
}

}  // namespace

MainWindowTest::MainWindowTest()
    : Folder(NewFolder()), Store(Folder / L"Logs"), ports_{system_,     privileges_, Debug,     Boxes,
                                                           pump_,       accounts_,   locale_,   errors_,
                                                           categories_, factory_,    darkMode_, clipboard_} {
    system_.Folder = Folder;
    WriteSetting(L"Options", L"Language", L"1");
    WriteSetting(L"Options", L"CurrTheme", L"0");
    if (IsDoubleAskedFor()) {
        SetDoubleStore(Store.wstring(), system_.ComputerName());
    } else {
        WriteSetting(L"EventStore", L"Folder", Store.wstring());
    }
    INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
}

MainWindowTest::~MainWindowTest() {
    ReleaseWindow();
    std::error_code ignored;
    std::filesystem::remove_all(Folder, ignored);
}

void MainWindowTest::WriteLog(const std::wstring& channel, std::uint64_t events) {
    std::error_code ignored;
    std::filesystem::create_directories(Store, ignored);
    ASSERT_EQ(samples::WriteSampleLog(Store / (channel + L".evtx"), channel, events, 7), 0u);
}

void MainWindowTest::WriteSetting(std::wstring_view section, std::wstring_view key, std::wstring_view value) {
    std::error_code ignored;
    std::filesystem::create_directories(Folder / L"Settings", ignored);
    SettingsFile((Folder / L"Settings" / L"inifile.ini").wstring()).WriteSetting(section, key, value);
}

std::wstring MainWindowTest::ReadSetting(std::wstring_view section, std::wstring_view key) const {
    return SettingsFile((Folder / L"Settings" / L"inifile.ini").wstring()).ReadSetting(section, key, L"missing");
}

void MainWindowTest::Start() {
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    window_ = std::make_unique<MainWindow>(
        MainWindowArguments{.Instance = instance, .System = ports_, .Created = {}, .EndProcess = [this] { ++Ended; }});
    ASSERT_TRUE(MainWindow::RegisterOwnClass(instance, WindowClass));
    ASSERT_TRUE(window_->Create(WindowClass, L"Corvina"));
    ASSERT_FALSE(Debug.Lines.empty());
    ASSERT_EQ(Debug.Lines.back(), L"Corvina is ready\n");
    if (IsDoubleAskedFor()) {
        ASSERT_NE(FindDoubleFunction<OpenHandleCountFunction>(OpenHandleCountName), nullptr)
            << "the window does not run over the double";
    }
    SetForegroundWindow(Main());
    Pump();
}

void MainWindowTest::CloseAndDestroy() {
    SendMessageW(Main(), WM_CLOSE, 0, 0);
    ReleaseWindow();
    Pump();
}

// The library is held meanwhile: it would forget its handles when it is unloaded.
void MainWindowTest::ReleaseWindow() {
    const SystemLibrary eventLog(L"wevtapi.dll");
    const bool hadWindow = window_ != nullptr;
    window_.reset();
    if (IsDoubleAskedFor() && hadWindow) {
        EXPECT_EQ(DoubleOpenHandleCount(), 0u);
    }
}

void MainWindowTest::Pump() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (window_ != nullptr) {
            ProcessMessage(*window_, message);
        }
    }
}

HWND MainWindowTest::Child(const wchar_t* className, int index) const {
    HWND child = nullptr;
    for (int i = 0; i <= index; ++i) {
        child = FindWindowExW(Main(), child, className, nullptr);
    }
    return child;
}

// Asked for with every cell. It is looked for once only, since the order of windows is known to another process.
HWND MainWindowTest::ListControl() const {
    if (!IsWindow(list_)) {
        list_ = Child(L"SysListView32");
    }
    return list_;
}

HWND MainWindowTest::HeaderControl() const {
    return reinterpret_cast<HWND>(SendMessageW(ListControl(), LVM_GETHEADER, 0, 0));
}

std::wstring MainWindowTest::TextOf(HWND window) {
    return ui::TextOf(window);
}

std::wstring MainWindowTest::ClipboardText() {
    if (!OpenClipboard(nullptr)) {
        return L"(cannot be opened)";
    }
    std::wstring text = L"(no text)";
    const HANDLE block = GetClipboardData(CF_UNICODETEXT);
    if (const auto* characters = static_cast<const wchar_t*>(block == nullptr ? nullptr : GlobalLock(block))) {
        text = characters;
        GlobalUnlock(block);
    }
    CloseClipboard();
    return text;
}

RECT MainWindowTest::PlaceIn(HWND parent, HWND child) {
    RECT place{};
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

std::wstring MainWindowTest::ItemText(HTREEITEM item) const {
    wchar_t text[260] = {};
    TVITEMW description{};
    description.mask = TVIF_TEXT;
    description.hItem = item;
    description.pszText = text;
    description.cchTextMax = 260;
    SendMessageW(TreeControl(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&description));
    return description.pszText;
}

HTREEITEM MainWindowTest::FindItem(HTREEITEM parent, const std::wstring& caption) const {
    const auto next = [this](UINT relation, HTREEITEM item) {
        return reinterpret_cast<HTREEITEM>(
            SendMessageW(TreeControl(), TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
    };
    for (HTREEITEM item = next(TVGN_CHILD, parent); item != nullptr; item = next(TVGN_NEXT, item)) {
        if (CaptionBaseName(ItemText(item)) == caption) {
            return item;
        }
    }
    return nullptr;
}

void MainWindowTest::SelectNode(const std::vector<std::wstring>& captions) {
    auto item = reinterpret_cast<HTREEITEM>(SendMessageW(TreeControl(), TVM_GETNEXTITEM, TVGN_ROOT, 0));
    for (const std::wstring& caption : captions) {
        item = FindItem(item, caption);
        ASSERT_NE(item, nullptr);
    }
    SendMessageW(TreeControl(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
    Pump();
}

std::wstring MainWindowTest::SelectedNodeCaption() const {
    const LRESULT item = SendMessageW(TreeControl(), TVM_GETNEXTITEM, TVGN_CARET, 0);
    return item == 0 ? std::wstring() : ItemText(reinterpret_cast<HTREEITEM>(item));
}

int MainWindowTest::RowCount() const {
    return static_cast<int>(SendMessageW(ListControl(), LVM_GETITEMCOUNT, 0, 0));
}

std::wstring MainWindowTest::Cell(int row, int column) const {
    wchar_t text[400] = {};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 400;
    SendMessageW(ListControl(), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text;
}

std::wstring MainWindowTest::ColumnHeader(int column) const {
    wchar_t text[260] = {};
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = text;
    item.cchTextMax = 260;
    SendMessageW(HeaderControl(), HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
    return text;
}

int MainWindowTest::ColumnCountShown() const {
    return static_cast<int>(SendMessageW(HeaderControl(), HDM_GETITEMCOUNT, 0, 0));
}

void MainWindowTest::ClickHeader(int column) {
    RECT place{};
    SendMessageW(HeaderControl(), HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&place));
    const LPARAM middle = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    SendMessageW(HeaderControl(), WM_LBUTTONDOWN, MK_LBUTTON, middle);
    SendMessageW(HeaderControl(), WM_LBUTTONUP, 0, middle);
    Pump();
}

void MainWindowTest::SelectRowsOnly(const std::vector<int>& rows) {
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED;
    SendMessageW(ListControl(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&state));
    state.state = LVIS_SELECTED;
    for (const int row : rows) {
        SendMessageW(ListControl(), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&state));
    }
    Pump();
}

std::vector<int> MainWindowTest::SelectedRowNumbers() const {
    std::vector<int> rows;
    for (LRESULT row = -1;
         (row = SendMessageW(ListControl(), LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED)) >= 0;) {
        rows.push_back(static_cast<int>(row));
    }
    return rows;
}

void MainWindowTest::PressKey(WORD virtualKey) {
    PostMessageW(GetFocus(), WM_KEYDOWN, virtualKey, 1);
    PostMessageW(GetFocus(), WM_KEYUP, virtualKey, static_cast<LPARAM>(0xC0000001));
    Pump();
}

void MainWindowTest::WhileModal(const std::function<void()>& open, const std::function<bool()>& action) {
    std::function<bool()> once = action;
    modalAction = &once;
    triesLeft = 200;
    const UINT_PTR timer = SetTimer(nullptr, 0, 50, RunModalAction);
    open();
    Pump();
    EXPECT_EQ(modalAction, nullptr) << "the modal loop ended before anything was done in it";
    modalAction = nullptr;
    KillTimer(nullptr, timer);
}

std::vector<ShownMenuEntry> MainWindowTest::EntriesOf(HMENU menu) {
    std::vector<ShownMenuEntry> entries;
    for (UINT i = 0; i < static_cast<UINT>(GetMenuItemCount(menu)); ++i) {
        wchar_t text[200] = {};
        GetMenuStringW(menu, i, text, 200, MF_BYPOSITION);
        const UINT state = GetMenuState(menu, i, MF_BYPOSITION);
        const bool isSeparator = (state & MF_SEPARATOR) != 0;
        entries.push_back({isSeparator ? 0 : GetMenuItemID(menu, static_cast<int>(i)), text,
                           !isSeparator && (state & (MF_GRAYED | MF_DISABLED)) == 0});
    }
    return entries;
}

std::vector<ShownMenuEntry> MainWindowTest::ContextMenuOf(HWND control, POINT screenPlace) {
    std::vector<ShownMenuEntry> entries;
    const LPARAM place = MAKELPARAM(screenPlace.x, screenPlace.y);
    WhileModal([&] { SendMessageW(Main(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(control), place); },
               [&] {
                   const HWND shown = FindWindowW(L"#32768", nullptr);
                   if (shown == nullptr || !IsWindowVisible(shown)) {
                       return false;
                   }
                   entries = EntriesOf(reinterpret_cast<HMENU>(SendMessageW(shown, MenuHandleMessage, 0, 0)));
                   EndMenu();
                   return true;
               });
    return entries;
}

}  // namespace corvina::test
