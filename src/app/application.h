// The program behind its main window: it owns every object of the logic, starts them in their order, and answers what
// happens in the window. The window calls in; what the program wants shown goes out through the view interfaces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/key_commands.h"
#include "app/main_window_view.h"
#include "app/menus.h"
#include "details/details_pane_view.h"
#include "details/details_window_view.h"
#include "eventlog/load_view.h"
#include "eventlog/log_tree.h"
#include "i18n/language.h"
#include "platform/accounts.h"
#include "platform/category_message_files.h"
#include "platform/clipboard.h"
#include "platform/dark_mode_api.h"
#include "platform/debug_log.h"
#include "platform/event_log_api.h"
#include "platform/locale_services.h"
#include "platform/message_pump.h"
#include "platform/prompts.h"
#include "platform/settings_store.h"
#include "platform/system_errors.h"
#include "platform/system_services.h"
#include "theme/theme.h"

namespace corvina {

// Makes the two ports that depend on where the program stands and on its settings.
class PortFactory {
  public:
    virtual ~PortFactory() = default;

    // The settings file of that path; it need not exist.
    virtual std::unique_ptr<SettingsStore> OpenSettings(std::wstring_view path) = 0;

    // The event log: the store in `storeFolder` when that is not empty, else the system's service, else the store in
    // folder "Store" below `baseFolder`. Never null: where nothing is there the event log has no channels.
    virtual std::unique_ptr<EventLogApi> OpenEventLog(std::wstring_view storeFolder, std::wstring_view baseFolder,
                                                      std::wstring_view computerName) = 0;
};

// Everything that the program asks of the operating system.
struct Ports {
    SystemServices& System;
    PrivilegeToken& Privileges;
    DebugLog& Debug;
    Prompts& Boxes;
    MessagePump& Pump;
    Accounts& AccountNames;
    LocaleServices& Locale;
    SystemErrors& Errors;
    CategoryMessageFiles& Categories;
    PortFactory& Factory;
    DarkModeApi& DarkMode;
    Clipboard& Copies;
};

struct Views {
    MainWindowView& Window;
    LogTreeView& Tree;
    LoadView& Load;
    DetailsPaneView& Details;
    DetailsWindowView& EventWindow;
};

class Application {
  public:
    Application(Ports& ports, Views views);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // The work of the main window's create handler, in its order, ending with the load of the node named by the setting
    // "Select" in section "EventStore", if there is one.
    void Create();

    // Close request: ends the session, saves the settings. The caller then ends the process with exit status 1.
    void Close();

    // Tree.
    void TreeSelectionChanged(NodeId node);
    const LogTree& Tree() const;

    // Event list.
    std::wstring_view CellText(std::size_t row, std::size_t position) const;
    std::uint32_t RowImage(std::size_t row) const;
    void RowSelectionChanged();  // the selected row or the set of selected rows is another one
    void HeaderClicked(std::size_t position);

    // Menus (`menu` is one of the CORVINA_ID_MENU_ identifiers) and commands. Entries whose command does not exist yet
    // or does not apply are disabled.
    std::vector<MenuEntry> Menu(std::uint32_t menu) const;
    // The tree's menu for a node: none when there is no menu for its kind.
    std::optional<std::uint32_t> MenuOfNode(NodeId node) const;
    void Command(std::uint32_t command);

    // A released key; true when it was a command of the program. Tab moves the focus.
    bool KeyReleased(const KeyRelease& key);

    const i18n::Language& CurrentLanguage() const;

    // The running display mode and its colours; the window paints with them after each MainWindowView::ApplyTheme.
    Theme& Scheme();
    const Palette& Colors() const;
    // Whether the rows of the event list take colours by their level.
    bool ColorsRowsByLevel() const;

    // What the application owns; for the parts of this room only.
    struct State;

  private:
    void SelectNamedNode();
    void SelectNode(NodeId node);
    void LoadNode(NodeId node);
    void ForgetLostSavedLogs();
    void OpenSavedLog();
    void RemoveSelectedSavedLog();
    void RemoveSelectedRows();
    void ChooseColumns();
    void EditOptions();
    void Restart();
    void ShowAbout();
    void CopyTable();
    void CopyDetails();
    MenuSituation Situation() const;
    bool IsSelectedChannelEnabled() const;

    std::unique_ptr<State> state_;
};

}  // namespace corvina
