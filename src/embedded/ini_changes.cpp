#include "embedded/ini_changes.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "base/letter_case.h"
#include "base/utf.h"
#include "platform/error_codes.h"
#include "platform/replacing_file.h"

namespace corvina::embedded {
namespace {

class IniText {
  public:
    explicit IniText(std::string_view utf8) : lineEnd_(utf8.find("\r\n") != std::string_view::npos ? "\r\n" : "\n") {
        while (!utf8.empty()) {
            const std::size_t end = std::min(utf8.find('\n'), utf8.size() - 1) + 1;
            lines_.emplace_back(utf8.substr(0, end));
            utf8.remove_prefix(end);
        }
    }

    void Set(std::wstring_view section, const IniEntry& entry) {
        const Place place = Find(section, entry.first);
        if (place.Entry) {
            std::string& line = lines_[*place.Entry];
            line = line.substr(0, line.find('=') + 1) + Utf8FromWide(entry.second) + EndOf(line);
            return;
        }
        std::size_t at = lines_.size();
        if (place.SectionEnd) {
            at = *place.SectionEnd;
        } else {
            if (!lines_.empty()) {
                Insert(at++, "");
            }
            Insert(at++, "[" + Utf8FromWide(section) + "]");
        }
        Insert(at, Utf8FromWide(entry.first) + "=" + Utf8FromWide(entry.second));
    }

    std::string Text() const {
        std::string text;
        for (const std::string& line : lines_) {
            text += line;
        }
        return text;
    }

  private:
    struct Place {
        std::optional<std::size_t> Entry;       // the last line of the key, which is the one that counts
        std::optional<std::size_t> SectionEnd;  // behind the last line that says something in the last such section
    };

    Place Find(std::wstring_view section, std::wstring_view key) const {
        Place place;
        bool inside = false;
        for (std::size_t index = 0; index < lines_.size(); ++index) {
            const IniLine line = ParseIniLine(Content(index));
            if (line.What == IniLine::Kind::Section) {
                inside = EqualIgnoringCase(line.Name, section);
            }
            if (!inside || line.What == IniLine::Kind::Nothing) {
                continue;
            }
            place.SectionEnd = index + 1;
            if (line.What == IniLine::Kind::Entry && EqualIgnoringCase(line.Name, key)) {
                place.Entry = index;
            }
        }
        return place;
    }

    // The byte order mark belongs to no line.
    std::string_view Content(std::size_t index) const {
        const std::string_view line = lines_[index];
        return index == 0 && line.starts_with(Utf8ByteOrderMark) ? line.substr(Utf8ByteOrderMark.size()) : line;
    }

    // A line is ended by what stands before it is added to, so a last line without an end gets one.
    void Insert(std::size_t at, std::string line) {
        if (at > 0 && !lines_[at - 1].ends_with('\n')) {
            lines_[at - 1] += lineEnd_;
        }
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), std::move(line) + lineEnd_);
    }

    static std::string EndOf(const std::string& line) {
        return line.ends_with("\r\n") ? "\r\n" : line.ends_with('\n') ? "\n" : "";
    }

    std::string lineEnd_;
    std::vector<std::string> lines_;  // with their ends
};

// A name with a line break or blanks around it, or half a surrogate, would be read as something else.
bool IsReadBack(std::string_view utf8, std::wstring_view section, std::span<const IniEntry> entries) {
    const std::vector<IniSection> sections = ParseIni(utf8);
    return std::all_of(entries.begin(), entries.end(), [&](const IniEntry& entry) {
        std::optional<std::wstring> value;
        for (const IniSection& read : sections) {
            if (EqualIgnoringCase(read.Name, section)) {
                auto found = read.Find(entry.first);
                value = found ? found : value;
            }
        }
        return value == entry.second;
    });
}

bool IsUtf16(std::string_view text) {
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

}  // namespace

std::string ChangedIni(std::string_view utf8, std::wstring_view section, std::span<const IniEntry> entries) {
    IniText text(utf8);
    for (const IniEntry& entry : entries) {
        text.Set(section, entry);
    }
    return text.Text();
}

std::uint32_t ChangeIniFile(const std::filesystem::path& path, std::wstring_view section,
                            std::span<const IniEntry> entries) {
    std::uint32_t error = error::Success;
    const std::optional<std::string> before = ReadIniText(path, error);
    if (!before && error != error::FileNotFound) {
        return error;
    }
    const std::string after = ChangedIni(before.value_or(std::string()), section, entries);
    if (IsUtf16(after) || after.size() > MaximumIniFileSize) {
        return error::InvalidData;
    }
    if (!IsReadBack(after, section, entries)) {
        return error::InvalidParameter;
    }
    const std::unique_ptr<ReplacingFile> file = CreateReplacingFile(path, ExistingFile::Replace, error);
    if (file == nullptr) {
        return error;
    }
    error = file->Append(after);
    return error != error::Success ? error : file->Commit();
}

}  // namespace corvina::embedded
