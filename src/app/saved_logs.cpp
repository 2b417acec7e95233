#include "app/saved_logs.h"

#include <algorithm>
#include <cstddef>

#include "base/format_text.h"
#include "eventlog/log_tree_builder.h"

namespace corvina {
namespace {

// A name that a settings file can hold as a key: "=" would end it, and "[" or ";" at the front would make the line
// something else.
std::wstring KeyFromFileName(std::wstring_view name) {
    std::wstring key(name);
    std::replace_if(
        key.begin(), key.end(), [](wchar_t character) { return character < L' ' || character == L'='; }, L'_');
    if (key.empty() || key.front() == L'[' || key.front() == L';' || key.front() == L' ') {
        key.insert(key.begin(), L'_');
    }
    return key;
}

// "Name 2.evtx" for the second file of a name: a number before the file's extension.
std::wstring NumberedKey(const std::wstring& key, unsigned number) {
    const std::size_t dot = key.rfind(L'.');
    const std::size_t end = dot == std::wstring::npos || dot == 0 ? key.size() : dot;
    return FormatText(L"%s %u%s", {key.substr(0, end), number, key.substr(end)});
}

}  // namespace

std::wstring SavedLogs::Add(std::wstring_view path) {
    const auto entries = settings_.ReadSection(SavedLogsSection);
    for (const auto& [key, value] : entries) {
        if (locale_.CompareIgnoringCase(value, path) == 0) {
            return key;
        }
    }
    const auto isTaken = [&](const std::wstring& candidate) {
        return std::any_of(entries.begin(), entries.end(),
                           [&](const auto& entry) { return locale_.CompareIgnoringCase(entry.first, candidate) == 0; });
    };
    const std::wstring first = KeyFromFileName(path.substr(path.find_last_of(L"\\/") + 1));
    std::wstring key = first;
    // There are fewer taken keys than numbers to try.
    for (unsigned number = 2; isTaken(key) && number < entries.size() + 3; ++number) {
        key = NumberedKey(first, number);
    }
    settings_.WriteSetting(SavedLogsSection, key, path);
    return key;
}

void SavedLogs::Remove(std::wstring_view key) {
    settings_.RemoveSetting(SavedLogsSection, key);
}

}  // namespace corvina
