// The saved log files that the user has opened: the settings remember each under a name of its own, which is also its
// caption in the tree.
#pragma once

#include <string>
#include <string_view>

#include "platform/locale_services.h"
#include "platform/settings_store.h"

namespace corvina {

class SavedLogs {
  public:
    SavedLogs(SettingsStore& settings, const LocaleServices& locale) : settings_(settings), locale_(locale) {}

    // Remembers a file and returns its key: the one it already has, else the file's name, changed until no other file
    // has it. Keys that differ in case only are the same key in a settings file.
    std::wstring Add(std::wstring_view path);

    void Remove(std::wstring_view key);

  private:
    SettingsStore& settings_;
    const LocaleServices& locale_;
};

}  // namespace corvina
