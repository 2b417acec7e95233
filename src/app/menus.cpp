#include "app/menus.h"

#include <initializer_list>
#include <string_view>

#include "app/command_ids.h"

namespace corvina {
namespace {

// Slots of the language tables.
constexpr int ClearLogSlot = 72;
constexpr int RemoveSlot = 167;
constexpr int EnableProtocolSlot = 74;
constexpr int DisableProtocolSlot = 75;
constexpr int PropertiesSlot = 76;
constexpr int ColumnsSlot = 111;
constexpr int CreateTaskSlot = 230;
constexpr int OpenSavedLogSlot = 70;

struct EntryTemplate {
    std::uint32_t Command = 0;  // 0: a separator
    int Slot = 0;
};

constexpr EntryTemplate Separator{};

bool CanBeRemoved(const MenuSituation& situation) {
    return situation.SelectedNode == NodeKind::SavedLog || situation.SelectedNode == NodeKind::CustomView;
}

std::vector<EntryTemplate> TreeMenu(const MenuSituation& situation) {
    return {{CORVINA_ID_OPEN_SAVED_LOG, OpenSavedLogSlot},
            Separator,
            {CORVINA_ID_EXPORT_LOG, 71},
            {CORVINA_ID_CLEAR_LOG, CanBeRemoved(situation) ? RemoveSlot : ClearLogSlot},
            Separator,
            {CORVINA_ID_SEARCH, 73},
            Separator,
            {CORVINA_ID_SWITCH_CHANNEL, situation.IsChannelEnabled ? DisableProtocolSlot : EnableProtocolSlot},
            Separator,
            {CORVINA_ID_LOG_PROPERTIES, PropertiesSlot},
            Separator,
            {CORVINA_ID_FILTER_LOG, 100},
            {CORVINA_ID_DELETE_FILTER, 162},
            Separator,
            {CORVINA_ID_CREATE_TASK_FROM_TREE, CreateTaskSlot}};
}

std::vector<EntryTemplate> ListMenu() {
    return {{CORVINA_ID_EVENT_PROPERTIES, PropertiesSlot},
            Separator,
            {CORVINA_ID_SAVE_SELECTED_EVENTS, 77},
            Separator,
            {CORVINA_ID_COPY_TABLE, 79},
            {CORVINA_ID_COPY_DETAILS, 80},
            Separator,
            {CORVINA_ID_REMOVE_ROWS, 161},
            Separator,
            {CORVINA_ID_CREATE_TASK_FROM_LIST, CreateTaskSlot}};
}

std::vector<EntryTemplate> MainMenu() {
    return {{CORVINA_ID_CONNECT_FAST, 218},
            Separator,
            {CORVINA_ID_OPTIONS, 40},
            Separator,
            {CORVINA_ID_CHECK_FOR_UPDATES, 221},
            Separator,
            {CORVINA_ID_COLUMNS, ColumnsSlot},
            Separator,
            {CORVINA_ID_CLEAR_ALL_LOGS, 240},
            Separator,
            {CORVINA_ID_ABOUT, 44}};
}

std::vector<EntryTemplate> MenuTemplate(std::uint32_t menu, const MenuSituation& situation) {
    switch (menu) {
        case CORVINA_ID_MENU_TREE:
            return TreeMenu(situation);
        case CORVINA_ID_MENU_LIST:
            return ListMenu();
        case CORVINA_ID_MENU_MAIN:
            return MainMenu();
        case CORVINA_ID_MENU_SAVED_LOGS:
            return {{CORVINA_ID_OPEN_SAVED_LOG, OpenSavedLogSlot}};
        case CORVINA_ID_MENU_CUSTOM_VIEWS:
            return {{CORVINA_ID_CREATE_CUSTOM_VIEW, 152}};
        case CORVINA_ID_MENU_REMOVE:
            return {{CORVINA_ID_REMOVE, RemoveSlot}};
        case CORVINA_ID_MENU_HEADER:
            return {{CORVINA_ID_COLUMNS, ColumnsSlot}};
        case CORVINA_ID_MENU_CHECK_LIST:
            return {{CORVINA_ID_SELECT_ALL, 197}, Separator, {CORVINA_ID_INVERT_SELECTION, 198}};
        case CORVINA_ID_MENU_ENTRY_LIST:
            return {{CORVINA_ID_OPEN_ENTRY, 28}, Separator, {CORVINA_ID_DELETE_ENTRY, 153}};
        case CORVINA_ID_MENU_DETAILS:
            return {{CORVINA_ID_COPY_FROM_DETAILS, 247}};
        default:
            return {};
    }
}

}  // namespace

std::vector<MenuEntry> BuildMenu(std::uint32_t menu, const i18n::Language& language, const MenuSituation& situation) {
    std::vector<MenuEntry> entries;
    for (const EntryTemplate& entry : MenuTemplate(menu, situation)) {
        if (entry.Command == 0) {
            entries.push_back({});
        } else {
            entries.push_back(
                {entry.Command, std::wstring(language.Text(entry.Slot)), IsCommandEnabled(entry.Command, situation)});
        }
    }
    return entries;
}

std::optional<std::uint32_t> MenuOfNodeKind(NodeKind kind) {
    switch (kind) {
        case NodeKind::Channel:
        case NodeKind::SavedLog:
        case NodeKind::CustomView:
        case NodeKind::MergedChannels:
        case NodeKind::AdministrativeEvents:
            return CORVINA_ID_MENU_TREE;
        case NodeKind::SavedLogs:
            return CORVINA_ID_MENU_SAVED_LOGS;
        case NodeKind::CustomViews:
            return CORVINA_ID_MENU_CUSTOM_VIEWS;
        default:
            return std::nullopt;
    }
}

bool IsCommandEnabled(std::uint32_t command, const MenuSituation& situation) {
    switch (command) {
        case CORVINA_ID_OPEN_SAVED_LOG:
        case CORVINA_ID_OPTIONS:
        case CORVINA_ID_COLUMNS:
        case CORVINA_ID_ABOUT:
        case CORVINA_ID_COPY_FROM_DETAILS:
        case CORVINA_ID_SELECT_ALL:
        case CORVINA_ID_INVERT_SELECTION:
            return true;
        case CORVINA_ID_CLEAR_LOG:
        case CORVINA_ID_REMOVE:
            return situation.SelectedNode == NodeKind::SavedLog;
        case CORVINA_ID_EVENT_PROPERTIES:
        case CORVINA_ID_COPY_TABLE:
        case CORVINA_ID_COPY_DETAILS:
        case CORVINA_ID_REMOVE_ROWS:
            return situation.HasSelectedRows;
        default:
            return false;
    }
}

}  // namespace corvina
