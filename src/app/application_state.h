// What the application owns. Values of the running program stand here once and are handed by reference to whoever needs
// them.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/application.h"
#include "app/event_list_columns.h"
#include "app/event_list_sort.h"
#include "app/log_objects.h"
#include "app/program_folders.h"
#include "app/settings.h"
#include "eventlog/log_tree.h"
#include "eventlog/row_store.h"
#include "i18n/language.h"
#include "theme/theme.h"

namespace corvina {

struct Application::State {
    State(Ports& system, const Views& views)
        : System(system), Shown(views), Scheme(system.DarkMode), Tree(&views.Tree) {}

    Ports& System;
    Views Shown;

    ProgramFolders Folders;
    std::unique_ptr<SettingsStore> Settings;  // null before the settings file is known
    SettingsValues Values;
    Theme Scheme;
    i18n::Language Language;

    EventListColumns Columns;
    EventListSort Sort;
    RowStore Rows;
    LogTree Tree;
    std::unique_ptr<LogObjects> Logs;  // null before the event log is opened

    bool HasControls = false;
    // The window stands where the settings say. A message box during the start lets a close request through: saving
    // then would put the window's first, arbitrary place in the settings.
    bool IsStarted = false;

    // Saved logs that were selected and whose nodes may have been found to be without a file: node and key.
    std::vector<std::pair<NodeId, std::wstring>> VisitedSavedLogs;
};

}  // namespace corvina
