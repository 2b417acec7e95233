// The settings of the main window: the values that the program holds while it runs, and how they are read and written.
#pragma once

#include "app/event_list_columns.h"
#include "app/main_window_view.h"
#include "platform/settings_store.h"
#include "theme/theme.h"

namespace corvina {

// What is held in memory between start and close.
struct SettingsValues {
    int CurrTheme = static_cast<int>(DisplayMode::Black);
    int LanguageIndex = 0;
    int VerticalSplitter = 250;    // pixels
    int HorizontalSplitter = 250;  // pixels
    bool GridLines = false;
    bool AutomaticUpdates = false;
    bool ColorListView = false;
};

// The display mode; following the system is the default where the system can be dark, and impossible where it cannot.
int ReadDisplayMode(const SettingsStore& settings, bool supportsDarkMode);

// The language's index as a number, read anew after it has been chosen, which may just have written it.
int ReadLanguageIndex(const SettingsStore& settings);

void ReadSplitters(const SettingsStore& settings, SettingsValues& values);
void ReadGridLinesAndUpdates(const SettingsStore& settings, SettingsValues& values);

// Exactly "1" turns the colours on.
void ReadColorListView(const SettingsStore& settings, SettingsValues& values);

// Maximizes the window or moves it to where it was.
void RestoreWindow(const SettingsStore& settings, MainWindowView& window);

// Writes what changes while the program runs: widths, visible columns, the window's place, the splitters. A minimized
// window leaves its place unwritten; a maximized one leaves the rectangle to which it returns.
void SaveMainSettings(SettingsStore& settings, EventListColumns& columns, const MainWindowView& window);

}  // namespace corvina
