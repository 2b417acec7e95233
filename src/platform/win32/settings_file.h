// The settings as the system's profile functions read and write them: an INI file named by its full path.
#pragma once

#include <string>

#include "platform/settings_store.h"

namespace corvina {

class SettingsFile : public SettingsStore {
  public:
    // `path` is the full path of the file, which need not exist yet; its folder must exist before something is written.
    explicit SettingsFile(std::wstring path) : path_(std::move(path)) {}

    std::wstring ReadSetting(std::wstring_view section, std::wstring_view key,
                             std::wstring_view defaultValue) const override;
    void WriteSetting(std::wstring_view section, std::wstring_view key, std::wstring_view value) override;
    void RemoveSetting(std::wstring_view section, std::wstring_view key) override;
    std::vector<std::pair<std::wstring, std::wstring>> ReadSection(std::wstring_view section) const override;
    bool Exists() const override;

  private:
    void CreateWithByteOrderMark() const;

    std::wstring path_;
};

}  // namespace corvina
