#include "platform/win32/settings_file.h"

#include <windows.h>

namespace corvina {
namespace {

constexpr std::size_t LongestValue = 259;
constexpr std::size_t LargestSection = std::size_t{4} << 20;  // characters

// The file has one line a setting, so a text ends at its first line break or zero: what follows would otherwise become
// lines of its own.
std::wstring OneLine(std::wstring_view text) {
    return std::wstring(text.substr(0, text.find_first_of(std::wstring_view(L"\r\n\0", 3))));
}

std::wstring_view WithoutBlanks(std::wstring_view text) {
    const auto isBlank = [](wchar_t character) { return character == L' ' || character == L'\t'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// The reading of single keys takes blanks and quotes off by itself; the reading of whole sections gives lines as they
// are.
std::wstring_view ValueOfLine(std::wstring_view text) {
    text = WithoutBlanks(text);
    if (text.size() >= 2 && (text.front() == L'"' || text.front() == L'\'') && text.back() == text.front()) {
        text = text.substr(1, text.size() - 2);
    }
    return text.substr(0, LongestValue);
}

}  // namespace

std::wstring SettingsFile::ReadSetting(std::wstring_view section, std::wstring_view key,
                                       std::wstring_view defaultValue) const {
    const std::wstring sectionName = OneLine(section);
    const std::wstring keyName = OneLine(key);
    if (sectionName.empty() || keyName.empty()) {
        return std::wstring(defaultValue);
    }
    wchar_t value[LongestValue + 1] = {};
    const DWORD length = GetPrivateProfileStringW(sectionName.c_str(), keyName.c_str(), OneLine(defaultValue).c_str(),
                                                  value, static_cast<DWORD>(LongestValue + 1), path_.c_str());
    return std::wstring(value, length);
}

void SettingsFile::WriteSetting(std::wstring_view section, std::wstring_view key, std::wstring_view value) {
    const std::wstring sectionName = OneLine(section);
    const std::wstring keyName = OneLine(key);
    if (sectionName.empty() || keyName.empty()) {
        return;
    }
    CreateWithByteOrderMark();
    WritePrivateProfileStringW(sectionName.c_str(), keyName.c_str(), OneLine(value).c_str(), path_.c_str());
}

void SettingsFile::RemoveSetting(std::wstring_view section, std::wstring_view key) {
    const std::wstring sectionName = OneLine(section);
    const std::wstring keyName = OneLine(key);
    // Without a key name the system would remove the whole section, and a missing file would be created.
    if (!sectionName.empty() && !keyName.empty() && Exists()) {
        WritePrivateProfileStringW(sectionName.c_str(), keyName.c_str(), nullptr, path_.c_str());
    }
}

std::vector<std::pair<std::wstring, std::wstring>> SettingsFile::ReadSection(std::wstring_view section) const {
    std::vector<std::pair<std::wstring, std::wstring>> settings;
    const std::wstring sectionName = OneLine(section);
    if (sectionName.empty()) {
        return settings;
    }
    std::wstring lines(4096, L'\0');
    std::size_t length = 0;
    for (;;) {
        length = GetPrivateProfileSectionW(sectionName.c_str(), lines.data(), static_cast<DWORD>(lines.size()),
                                           path_.c_str());
        // A buffer that is too small is filled but for the two closing zeros.
        if (length + 2 < lines.size() || lines.size() >= LargestSection) {
            break;
        }
        lines.resize(lines.size() * 4);
    }
    std::wstring_view rest(lines.data(), length);
    while (!rest.empty()) {
        const std::wstring_view line = rest.substr(0, rest.find(L'\0'));
        rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : line.size());
        const std::size_t sign = line.find(L'=');
        const std::wstring_view key = WithoutBlanks(line.substr(0, sign));
        if (sign != std::wstring_view::npos && !key.empty() && key.front() != L';') {
            settings.emplace_back(key, ValueOfLine(line.substr(sign + 1)));
        }
    }
    return settings;
}

bool SettingsFile::Exists() const {
    const DWORD attributes = GetFileAttributesW(path_.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// The system writes a new file in its regional character set and loses every name that the set lacks; a file that
// begins with a byte order mark stays in UTF-16.
void SettingsFile::CreateWithByteOrderMark() const {
    const HANDLE file =
        CreateFileW(path_.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return;
    }
    constexpr BYTE ByteOrderMark[] = {0xFF, 0xFE};
    DWORD written = 0;
    WriteFile(file, ByteOrderMark, sizeof(ByteOrderMark), &written, nullptr);
    CloseHandle(file);
}

}  // namespace corvina
