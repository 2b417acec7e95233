#include "embedded/ini_file.h"

#include <span>

#include "base/utf.h"
#include "embedded/fold_case.h"
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

void ParseLine(std::string_view line, std::vector<IniSection>& sections) {
    if (line.empty() || line.front() == ';' || line.front() == '#') {
        return;
    }
    if (line.front() == '[') {
        const std::size_t end = line.rfind(']');
        if (end != std::string_view::npos) {
            sections.push_back({WideFromUtf8(Trimmed(line.substr(1, end - 1))), {}});
        }
        return;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || sections.empty()) {
        return;
    }
    sections.back().Entries.emplace_back(WideFromUtf8(Trimmed(line.substr(0, equals))),
                                         WideFromUtf8(Trimmed(line.substr(equals + 1))));
}

}  // namespace

std::optional<std::wstring> IniSection::Find(std::wstring_view key) const {
    for (auto entry = Entries.rbegin(); entry != Entries.rend(); ++entry) {
        if (EqualWithoutCase(entry->first, key)) {
            return entry->second;
        }
    }
    return std::nullopt;
}

std::vector<IniSection> ParseIni(std::string_view utf8) {
    constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
    if (utf8.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
        utf8.remove_prefix(ByteOrderMark.size());
    }
    std::vector<IniSection> sections;
    while (!utf8.empty()) {
        const std::size_t end = utf8.find('\n');
        ParseLine(Trimmed(utf8.substr(0, end)), sections);
        utf8.remove_prefix(end == std::string_view::npos ? utf8.size() : end + 1);
    }
    return sections;
}

std::vector<IniSection> ReadIniFile(const std::filesystem::path& path, std::uint32_t& error) {
    const std::unique_ptr<RandomAccessFile> file = OpenRandomAccessFile(path, error);
    if (file == nullptr) {
        if (error == error::FileNotFound) {
            error = error::Success;
        }
        return {};
    }
    if (file->Size() > MaximumIniFileSize) {
        error = error::AccessDenied;
        return {};
    }
    std::string text(static_cast<std::size_t>(file->Size()), '\0');
    if (file->ReadAt(0, std::as_writable_bytes(std::span(text))) != text.size()) {
        error = error::AccessDenied;
        return {};
    }
    return ParseIni(text);
}

}  // namespace corvina::embedded
