// Settings in memory, with the order of all reads and writes, for tests that care which keys are touched and when.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/settings_store.h"

namespace corvina::test {

class MemorySettings final : public SettingsStore {
  public:
    struct Entry {
        std::wstring Section;
        std::wstring Key;
        std::wstring Value;
    };

    std::wstring ReadSetting(std::wstring_view section, std::wstring_view key,
                             std::wstring_view defaultValue) const override {
        Reads.emplace_back(key);
        const Entry* entry = Find(section, key);
        return std::wstring(entry == nullptr ? defaultValue : entry->Value).substr(0, 259);
    }

    void WriteSetting(std::wstring_view section, std::wstring_view key, std::wstring_view value) override {
        Writes.push_back(std::wstring(key) + L"=" + std::wstring(value));
        if (IsReadOnly) {
            return;
        }
        FileExists = true;
        Set(section, key, value);
    }

    void RemoveSetting(std::wstring_view section, std::wstring_view key) override {
        std::erase_if(Entries, [&](const Entry& entry) { return entry.Section == section && entry.Key == key; });
    }

    std::vector<std::pair<std::wstring, std::wstring>> ReadSection(std::wstring_view section) const override {
        std::vector<std::pair<std::wstring, std::wstring>> values;
        for (const Entry& entry : Entries) {
            if (entry.Section == section) {
                values.emplace_back(entry.Key, entry.Value);
            }
        }
        return values;
    }

    bool Exists() const override { return FileExists; }

    // For the test itself: sets and reads without leaving a trace in the lists.
    void Set(std::wstring_view section, std::wstring_view key, std::wstring_view value) {
        for (Entry& entry : Entries) {
            if (entry.Section == section && entry.Key == key) {
                entry.Value = value;
                return;
            }
        }
        Entries.push_back({std::wstring(section), std::wstring(key), std::wstring(value)});
    }
    std::wstring Value(std::wstring_view section, std::wstring_view key) const {
        const Entry* entry = Find(section, key);
        return entry == nullptr ? L"(missing)" : entry->Value;
    }

    std::vector<Entry> Entries;
    mutable std::vector<std::wstring> Reads;  // keys
    std::vector<std::wstring> Writes;         // "key=value"
    bool FileExists = true;
    bool IsReadOnly = false;  // writes are lost, as on a medium that cannot be written

  private:
    const Entry* Find(std::wstring_view section, std::wstring_view key) const {
        for (const Entry& entry : Entries) {
            if (entry.Section == section && entry.Key == key) {
                return &entry;
            }
        }
        return nullptr;
    }
};

}  // namespace corvina::test
