#include <algorithm>
#include <cstring>
#include <utility>

#include "app/command_ids.h"
#include "gui/main_window_fixture.h"
#include "ui/win32/common_controls.h"

namespace corvina::test {
namespace {

using KeysAndMenus = MainWindowTest;

const ShownMenuEntry* Find(const std::vector<ShownMenuEntry>& entries, UINT command) {
    const auto found = std::ranges::find(entries, command, &ShownMenuEntry::Command);
    return found == entries.end() ? nullptr : &*found;
}

std::vector<UINT> Commands(const std::vector<ShownMenuEntry>& entries) {
    std::vector<UINT> commands;
    for (const ShownMenuEntry& entry : entries) {
        commands.push_back(entry.Command);
    }
    return commands;
}

TEST_F(KeysAndMenus, TabGoesRoundOneStationAKey) {
    WriteLog(L"Application", 2);
    Start();
    SetFocus(TreeControl());
    for (const HWND station : {ListControl(), Field(0), Field(1), Field(2), Field(3), TreeControl(), ListControl()}) {
        PressKey(VK_TAB);
        EXPECT_EQ(GetFocus(), station);
    }
}

TEST_F(KeysAndMenus, AltAndF10LeadToTheMenuBarFromEveryControl) {
    constexpr LPARAM AltIsDown = 0x20000001;
    Start();
    for (const HWND station : {TreeControl(), ListControl(), Field(0)}) {
        for (const auto& [key, down] : {std::pair(VK_F10, LPARAM{1}), std::pair(VK_MENU, AltIsDown)}) {
            SetFocus(station);
            bool isInMenu = false;
            WhileModal(
                [&] {
                    PostMessageW(station, WM_SYSKEYDOWN, static_cast<WPARAM>(key), down);
                    PostMessageW(station, WM_SYSKEYUP, static_cast<WPARAM>(key), static_cast<LPARAM>(0xC0000001));
                    Pump();
                },
                [&] {
                    GUITHREADINFO state{};
                    state.cbSize = sizeof(state);
                    isInMenu = GetGUIThreadInfo(GetCurrentThreadId(), &state) && state.hwndMenuOwner == Main();
                    EndMenu();
                    return isInMenu;
                });
            EXPECT_TRUE(isInMenu) << key;
        }
    }
}

TEST_F(KeysAndMenus, EscapeInAFieldDoesNotCloseTheProgram) {
    Start();
    for (int field = 0; field < 4; ++field) {
        SetFocus(Field(field));
        PressKey(VK_ESCAPE);
    }
    EXPECT_EQ(Ended, 0);
    EXPECT_TRUE(IsWindowVisible(Main()));
}

TEST_F(KeysAndMenus, TheFocusComesBackToWhereItWas) {
    Start();
    SetFocus(Field(2));
    SendMessageW(Main(), WM_ACTIVATE, WA_INACTIVE, 0);
    SetFocus(nullptr);
    SetFocus(Main());
    EXPECT_EQ(GetFocus(), Field(2));
}

TEST_F(KeysAndMenus, TheListsMenuOffersWhatCanBeDone) {
    WriteLog(L"Application", 4);
    Start();
    const RECT list = PlaceIn(nullptr, ListControl());
    const POINT inside{list.left + 60, list.bottom - 40};
    const auto without = ContextMenuOf(ListControl(), inside);
    ASSERT_NE(Find(without, CORVINA_ID_REMOVE_ROWS), nullptr);
    EXPECT_FALSE(Find(without, CORVINA_ID_REMOVE_ROWS)->Enabled);

    SelectNode({L"Windows Logs", L"Application"});
    const auto entries = ContextMenuOf(ListControl(), inside);
    EXPECT_EQ(Commands(entries), (std::vector<UINT>{CORVINA_ID_EVENT_PROPERTIES, 0, CORVINA_ID_SAVE_SELECTED_EVENTS, 0,
                                                    CORVINA_ID_COPY_TABLE, CORVINA_ID_COPY_DETAILS, 0,
                                                    CORVINA_ID_REMOVE_ROWS, 0, CORVINA_ID_CREATE_TASK_FROM_LIST}));
    EXPECT_TRUE(Find(entries, CORVINA_ID_REMOVE_ROWS)->Enabled);
    EXPECT_EQ(Find(entries, CORVINA_ID_REMOVE_ROWS)->Text, L"Remove from list");

    const RECT header = PlaceIn(nullptr, HeaderControl());
    const auto ofHeader = ContextMenuOf(HeaderControl(), {header.left + 5, header.top + 5});
    EXPECT_EQ(Commands(ofHeader), std::vector<UINT>{CORVINA_ID_COLUMNS});
}

TEST_F(KeysAndMenus, TheTreesMenuIsAboutTheNodeUnderTheMouse) {
    WriteLog(L"Application", 4);
    WriteLog(L"System", 6);
    Start();
    SelectNode({L"Windows Logs", L"Application"});
    SelectNode({L"Windows Logs", L"System"});
    RECT item{};
    const LRESULT selected = SendMessageW(TreeControl(), TVM_GETNEXTITEM, TVGN_CARET, 0);
    const LRESULT above = SendMessageW(TreeControl(), TVM_GETNEXTITEM, TVGN_PREVIOUS, selected);
    ASSERT_NE(above, 0);
    std::memcpy(&item, &above, sizeof(above));
    SendMessageW(TreeControl(), TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&item));
    POINT place{item.left + 4, (item.top + item.bottom) / 2};
    ClientToScreen(TreeControl(), &place);

    const auto entries = ContextMenuOf(TreeControl(), place);
    EXPECT_EQ(SelectedNodeCaption(), L"Application (4)");
    EXPECT_EQ(Caption(), L"Application has 4 events");
    ASSERT_FALSE(entries.empty());
    EXPECT_EQ(entries.front().Command, static_cast<UINT>(CORVINA_ID_OPEN_SAVED_LOG));
    ASSERT_NE(Find(entries, CORVINA_ID_SWITCH_CHANNEL), nullptr);
    EXPECT_EQ(Find(entries, CORVINA_ID_SWITCH_CHANNEL)->Text, L"Disable Protocol");

    // The same menu from the keyboard, for the selected node.
    const auto fromKeyboard = ContextMenuOf(TreeControl(), {-1, -1});
    EXPECT_EQ(Commands(fromKeyboard), Commands(entries));
}

TEST_F(KeysAndMenus, TheMenuBarFollowsTheSituation) {
    WriteLog(L"Application", 4);
    WriteSetting(L"Options", L"Language", L"0");
    Start();
    const HMENU bar = GetMenu(Main());
    ASSERT_EQ(GetMenuItemCount(bar), 3);
    EXPECT_EQ(EntriesOf(bar)[1].Text, L"Ereignis");
    const HMENU program = GetSubMenu(bar, 2);
    SendMessageW(Main(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(program), 2);
    const auto entries = EntriesOf(program);
    EXPECT_EQ(Commands(entries),
              (std::vector<UINT>{CORVINA_ID_CONNECT_FAST, 0, CORVINA_ID_OPTIONS, 0, CORVINA_ID_CHECK_FOR_UPDATES, 0,
                                 CORVINA_ID_COLUMNS, 0, CORVINA_ID_CLEAR_ALL_LOGS, 0, CORVINA_ID_ABOUT}));
    EXPECT_EQ(Find(entries, CORVINA_ID_COLUMNS)->Text, L"Spalten");
    EXPECT_TRUE(Find(entries, CORVINA_ID_COLUMNS)->Enabled);

    const HMENU events = GetSubMenu(bar, 1);
    SendMessageW(Main(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(events), 1);
    EXPECT_FALSE(Find(EntriesOf(events), CORVINA_ID_REMOVE_ROWS)->Enabled);
    SelectNode({L"Windows-Protokolle", L"Application"});
    SendMessageW(Main(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(events), 1);
    EXPECT_TRUE(Find(EntriesOf(events), CORVINA_ID_REMOVE_ROWS)->Enabled);
}

TEST_F(KeysAndMenus, ASavedLogIsOpenedFromItsFileAndRemovedAgain) {
    WriteLog(L"Application", 4);
    std::filesystem::rename(Store / L"Application.evtx", Folder / L"old.evtx");
    Boxes.FileToOpen = (Folder / L"old.evtx").wstring();
    Start();
    SendMessageW(Main(), WM_COMMAND, CORVINA_ID_OPEN_SAVED_LOG, 0);
    Pump();
    EXPECT_EQ(RowCount(), 4);
    const std::wstring name = SelectedNodeCaption();
    EXPECT_FALSE(name.empty());
    EXPECT_EQ(ReadSetting(L"AddedFiles", name), Boxes.FileToOpen);

    const auto entries = ContextMenuOf(TreeControl(), {-1, -1});
    const auto* remove = Find(entries, CORVINA_ID_CLEAR_LOG);
    remove = remove == nullptr ? Find(entries, CORVINA_ID_REMOVE) : remove;
    ASSERT_NE(remove, nullptr);
    EXPECT_EQ(remove->Text, L"Remove");
    SendMessageW(Main(), WM_COMMAND, remove->Command, 0);
    Pump();
    EXPECT_EQ(ReadSetting(L"AddedFiles", name), L"missing");
    EXPECT_NE(SelectedNodeCaption(), name);
}

}  // namespace
}  // namespace corvina::test
