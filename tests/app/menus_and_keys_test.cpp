// Menus, keys, the focus ring and the privileges.
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/command_ids.h"
#include "app/focus_ring.h"
#include "app/key_commands.h"
#include "app/menus.h"
#include "app/privileges.h"
#include "support/doubles_ports.h"
#include "support/doubles_system.h"

namespace corvina {
namespace {

// A menu as one text: "identifier:caption" for each entry, "-" for a separator, "(…)" around what is greyed.
std::wstring Describe(std::uint32_t menu, const MenuSituation& situation) {
    std::wstring text;
    for (const MenuEntry& entry : BuildMenu(menu, i18n::Language(), situation)) {
        std::wstring line = entry.Command == 0 ? L"-" : std::to_wstring(entry.Command) + L":" + entry.Text;
        text += entry.Command == 0 || entry.Enabled ? line : L"(" + line + L")";
        text += L"|";
    }
    return text;
}

TEST(Menus, TheTreeMenuFollowsTheKindOfNode) {
    const MenuSituation channel{NodeKind::Channel, true, false};
    EXPECT_EQ(
        Describe(CORVINA_ID_MENU_TREE, channel),
        L"1015:Open saved log file|-|(1017:Export log)|(1018:Clear Log)|-|(1016:Search)|-|(1020:Disable Protocol)|-|"
        L"(1019:Properties)|-|(1060:Filter log)|(1075:Delete Filter)|-|(15489:Create Simple Task)|");
    const std::wstring savedLog = Describe(CORVINA_ID_MENU_TREE, {NodeKind::SavedLog, false, false});
    EXPECT_NE(savedLog.find(L"|1018:Remove|"), std::wstring::npos) << testing::PrintToString(savedLog);
    EXPECT_NE(savedLog.find(L"(1020:Enable Protocol)"), std::wstring::npos);
    const std::wstring customView = Describe(CORVINA_ID_MENU_TREE, {NodeKind::CustomView, false, false});
    EXPECT_NE(customView.find(L"1018:Remove"), std::wstring::npos);
    EXPECT_EQ(MenuOfNodeKind(NodeKind::Channel), CORVINA_ID_MENU_TREE);
    EXPECT_EQ(MenuOfNodeKind(NodeKind::SavedLogs), CORVINA_ID_MENU_SAVED_LOGS);
    EXPECT_EQ(MenuOfNodeKind(NodeKind::CustomViews), CORVINA_ID_MENU_CUSTOM_VIEWS);
    EXPECT_FALSE(MenuOfNodeKind(NodeKind::Folder));
}

TEST(Menus, TheOtherMenusStandInTheirOrder) {
    EXPECT_EQ(Describe(CORVINA_ID_MENU_LIST, {NodeKind::Channel, false, true}),
              L"1022:Properties|-|(1023:Save Selected Events)|-|1025:Copy table|1026:Copy details as text|-|"
              L"15478:Remove from list|-|(15491:Create Simple Task)|");
    EXPECT_NE(Describe(CORVINA_ID_MENU_LIST, {}).find(L"(15478:"), std::wstring::npos);
    EXPECT_EQ(Describe(CORVINA_ID_MENU_MAIN, {}),
              L"(15480:Connect Network Fast)|-|15485:Options|-|(15488:Check for updates)|-|1057:Columns|-|"
              L"(15492:Clear All Event Logs)|-|15481:About|");
    EXPECT_EQ(Describe(CORVINA_ID_MENU_SAVED_LOGS, {}), L"1015:Open saved log file|");
    EXPECT_EQ(Describe(CORVINA_ID_MENU_CUSTOM_VIEWS, {}), L"(1070:Create Custom View)|");
    EXPECT_EQ(Describe(CORVINA_ID_MENU_REMOVE, {NodeKind::SavedLog, false, false}), L"1078:Remove|");
    EXPECT_EQ(Describe(CORVINA_ID_MENU_HEADER, {}), L"1057:Columns|");
    EXPECT_EQ(Describe(CORVINA_ID_MENU_CHECK_LIST, {}), L"1067:Select All|-|1068:Invert Selection|");
    EXPECT_EQ(Describe(CORVINA_ID_MENU_ENTRY_LIST, {}), L"(1062:Open...)|-|(1072:Delete)|");
    EXPECT_EQ(Describe(CORVINA_ID_MENU_DETAILS, {}), L"15494:Copy|");
    EXPECT_TRUE(BuildMenu(4711, i18n::Language(), {}).empty());
}

TEST(KeyCommands, DependOnTheSelectedNodeAndTheFocus) {
    const auto command = [](std::uint32_t key, bool control, std::optional<NodeKind> node,
                            std::optional<FocusStation> focus) {
        const KeyMeaning meaning = MeaningOfKey({key, control, false}, {node, focus});
        return meaning.Action == KeyAction::MenuCommand ? meaning.Command : 0;
    };
    EXPECT_EQ(command('F', true, NodeKind::Channel, {}), unsigned{CORVINA_ID_SEARCH});
    EXPECT_EQ(command('F', true, NodeKind::SavedLog, {}), unsigned{CORVINA_ID_SEARCH});
    EXPECT_EQ(command('F', true, NodeKind::Folder, {}), 0U);
    EXPECT_EQ(command('F', false, NodeKind::Channel, {}), 0U);
    EXPECT_EQ(command('E', true, {}, FocusStation::List), unsigned{CORVINA_ID_SAVE_SELECTED_EVENTS});
    EXPECT_EQ(command('E', true, {}, FocusStation::Tree), unsigned{CORVINA_ID_EXPORT_LOG});
    EXPECT_EQ(command('E', true, {}, FocusStation::Description), 0U);
    EXPECT_EQ(command('E', false, {}, FocusStation::List), 0U);
    constexpr std::uint32_t Delete = 0x2E;
    EXPECT_EQ(command(Delete, false, NodeKind::Channel, {}), unsigned{CORVINA_ID_CLEAR_LOG});
    for (const NodeKind kind : {NodeKind::MergedChannels, NodeKind::AdministrativeEvents, NodeKind::SavedLog,
                                NodeKind::CustomView, NodeKind::Folder, NodeKind::Computer}) {
        EXPECT_EQ(command(Delete, false, kind, {}), 0U);
    }
    constexpr std::uint32_t F5 = 0x74;
    EXPECT_EQ(MeaningOfKey({F5, false, false}, {NodeKind::Channel, {}}).Action, KeyAction::ReloadChannel);
    EXPECT_EQ(MeaningOfKey({F5, false, false}, {NodeKind::SavedLog, {}}).Action, KeyAction::None);
    constexpr std::uint32_t Escape = 0x1B;
    EXPECT_EQ(MeaningOfKey({Escape, false, false}, {NodeKind::Channel, {}}).Action, KeyAction::None);
}

TEST(FocusRing, PassesEveryStationOnceInBothDirections) {
    EXPECT_EQ(NextFocusStation(std::nullopt, false), FocusStation::Tree);
    EXPECT_EQ(NextFocusStation(FocusStation::Tree, false), FocusStation::List);
    EXPECT_EQ(NextFocusStation(FocusStation::List, true), FocusStation::Tree);
    std::set<FocusStation> passed;
    FocusStation station = FocusStation::Tree;
    for (int step = 0; step < 6; ++step) {
        passed.insert(station);
        const FocusStation next = NextFocusStation(station, false);
        EXPECT_EQ(NextFocusStation(next, true), station);
        station = next;
    }
    EXPECT_EQ(station, FocusStation::Tree);
    EXPECT_EQ(passed.size(), 6U);
}

TEST(Privileges, AreEnabledOneByOneAndReported) {
    std::vector<std::wstring> journal;
    test::FakePrivilegeToken token(journal);
    test::RecordingDebugLog debug;
    token.LookUpErrors[L"SeChangeNotifyPrivilege"] = 1313;
    token.AdjustErrors[L"SeImpersonatePrivilege"] = 5;
    token.AdjustErrors[L"SeAuditPrivilege"] = error::NotAllAssigned;
    EnableProgramPrivileges(token, debug);
    const std::vector<std::wstring> lines = {L"LookupPrivilegeValue error: 1313\n", L"AdjustTokenPrivileges error: 5\n",
                                             L"The token does not have the specified privilege. \n",
                                             L"Get the specified privilege! \n", L"Get the specified privilege! \n"};
    EXPECT_EQ(debug.Lines, lines);
    EXPECT_EQ(token.Enabled, (std::vector<std::wstring>{L"SeRestorePrivilege", L"SeBackupPrivilege"}));
}

}  // namespace
}  // namespace corvina
