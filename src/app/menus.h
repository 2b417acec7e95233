// The popup menus of the main window: their entries in their order, with texts of the current language, and which of
// them can be used at the moment.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "eventlog/log_tree.h"
#include "i18n/language.h"

namespace corvina {

// One entry of a popup menu as it stands when it opens.
struct MenuEntry {
    std::uint32_t Command = 0;  // 0: a separator
    std::wstring Text;
    bool Enabled = false;
};

// What menus depend on when they open.
struct MenuSituation {
    std::optional<NodeKind> SelectedNode;
    bool IsChannelEnabled = false;  // by the selected channel's configuration; false when it cannot be read
    bool HasSelectedRows = false;
};

// The entries of one of the CORVINA_ID_MENU_ menus; none for any other identifier.
std::vector<MenuEntry> BuildMenu(std::uint32_t menu, const i18n::Language& language, const MenuSituation& situation);

// The tree's menu for a kind of node; none for a kind without one.
std::optional<std::uint32_t> MenuOfNodeKind(NodeKind kind);

// Whether a command does something in this situation. What cannot be used is greyed in every menu and ignored from
// every key.
bool IsCommandEnabled(std::uint32_t command, const MenuSituation& situation);

}  // namespace corvina
