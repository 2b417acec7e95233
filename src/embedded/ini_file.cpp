#include "embedded/ini_file.h"

#include <span>

#include "base/letter_case.h"
#include "base/utf.h"
#include "platform/error_codes.h"
#include "platform/random_access_file.h"

namespace corvina::embedded {
namespace {

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view Blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

}  // namespace

std::optional<std::wstring> IniSection::Find(std::wstring_view key) const {
    for (auto entry = Entries.rbegin(); entry != Entries.rend(); ++entry) {
        if (EqualIgnoringCase(entry->first, key)) {
            return entry->second;
        }
    }
    return std::nullopt;
}

IniLine ParseIniLine(std::string_view utf8) {
    const std::string_view line = Trimmed(utf8);
    if (line.empty() || line.front() == ';' || line.front() == '#') {
        return {};
    }
    if (line.front() == '[') {
        const std::size_t end = line.rfind(']');
        return end == std::string_view::npos
                   ? IniLine()
                   : IniLine{IniLine::Kind::Section, WideFromUtf8(Trimmed(line.substr(1, end - 1))), {}};
    }
    const std::size_t equals = line.find('=');
    return equals == std::string_view::npos
               ? IniLine()
               : IniLine{IniLine::Kind::Entry, WideFromUtf8(Trimmed(line.substr(0, equals))),
                         WideFromUtf8(Trimmed(line.substr(equals + 1)))};
}

std::vector<IniSection> ParseIni(std::string_view utf8) {
    if (utf8.starts_with(Utf8ByteOrderMark)) {
        utf8.remove_prefix(Utf8ByteOrderMark.size());
    }
    std::vector<IniSection> sections;
    while (!utf8.empty()) {
        const std::size_t end = utf8.find('\n');
        IniLine line = ParseIniLine(utf8.substr(0, end));
        if (line.What == IniLine::Kind::Section) {
            sections.push_back({std::move(line.Name), {}});
        } else if (line.What == IniLine::Kind::Entry && !sections.empty()) {
            sections.back().Entries.emplace_back(std::move(line.Name), std::move(line.Value));
        }
        utf8.remove_prefix(end == std::string_view::npos ? utf8.size() : end + 1);
    }
    return sections;
}

std::optional<std::string> ReadIniText(const std::filesystem::path& path, std::uint32_t& error) {
    const std::unique_ptr<RandomAccessFile> file = OpenRandomAccessFile(path, error);
    if (file == nullptr) {
        return std::nullopt;
    }
    if (file->Size() > MaximumIniFileSize) {
        error = error::AccessDenied;
        return std::nullopt;
    }
    std::string text(static_cast<std::size_t>(file->Size()), '\0');
    if (file->ReadAt(0, std::as_writable_bytes(std::span(text))) != text.size()) {
        error = error::AccessDenied;
        return std::nullopt;
    }
    return text;
}

std::vector<IniSection> ReadIniFile(const std::filesystem::path& path, std::uint32_t& error) {
    const std::optional<std::string> text = ReadIniText(path, error);
    if (error == error::FileNotFound) {
        error = error::Success;
    }
    return text ? ParseIni(*text) : std::vector<IniSection>();
}

}  // namespace corvina::embedded
