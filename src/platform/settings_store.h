// The port to the settings file: an INI file that is read and written key by key, every write going straight to the
// file.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvina {

class SettingsStore {
  public:
    virtual ~SettingsStore() = default;

    // The value of a key, or `defaultValue` when the section or key is missing. Values are cut to 259 characters;
    // blanks around a value and one pair of quotes around it are taken off, as the platform's profile functions do.
    virtual std::wstring ReadSetting(std::wstring_view section, std::wstring_view key,
                                     std::wstring_view defaultValue) const = 0;

    // Writes one key at once. A file that cannot be written is not reported: settings are a convenience.
    virtual void WriteSetting(std::wstring_view section, std::wstring_view key, std::wstring_view value) = 0;

    // Removes one key; nothing happens when it is not there.
    virtual void RemoveSetting(std::wstring_view section, std::wstring_view key) = 0;

    // All keys of a section with their values, in the order of the file.
    virtual std::vector<std::pair<std::wstring, std::wstring>> ReadSection(std::wstring_view section) const = 0;

    // Whether the file exists.
    virtual bool Exists() const = 0;
};

}  // namespace corvina
