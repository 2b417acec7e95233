// The small settings files of a store ("channels.ini", "account.ini"): sections of "Key=Value" lines in UTF-8.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvina::embedded {

// Larger files are refused: a thousand channels take some 100 KB.
inline constexpr std::size_t MaximumIniFileSize = std::size_t{4} * 1024 * 1024;

inline constexpr std::string_view Utf8ByteOrderMark = "\xEF\xBB\xBF";

using IniEntry = std::pair<std::wstring, std::wstring>;  // key and value

struct IniSection {
    std::wstring Name;
    std::vector<IniEntry> Entries;

    // The last value of a key (compared without case); none when the key is absent.
    std::optional<std::wstring> Find(std::wstring_view key) const;
};

// What one line says. A line that is neither a section nor an entry says nothing.
struct IniLine {
    enum class Kind { Nothing, Section, Entry };
    Kind What = Kind::Nothing;
    std::wstring Name;  // of the section, or the key
    std::wstring Value;
};
IniLine ParseIniLine(std::string_view utf8);

// Tolerant: blanks around names and values, a byte order mark, and comment lines (";" or "#") are skipped over; lines
// that are neither a section nor an entry are ignored. Sections stand in the order of the file and may repeat.
std::vector<IniSection> ParseIni(std::string_view utf8);

// Reads a file as it is; none when that fails. Errors as below, but for a file that does not exist, which is reported.
std::optional<std::string> ReadIniText(const std::filesystem::path& path, std::uint32_t& error);

// Reads and parses a file. A file that does not exist gives no sections and no error. Otherwise `error` is what the
// system gives, or error::AccessDenied when the file is too large or cannot be read whole.
std::vector<IniSection> ReadIniFile(const std::filesystem::path& path, std::uint32_t& error);

}  // namespace corvina::embedded
