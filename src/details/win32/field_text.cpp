#include "details/win32/field_text.h"

#include <windows.h>

#include <algorithm>

#include "base/text_direction.h"

namespace corvina {
namespace {

constexpr std::wstring_view LineBreak = L"\r\n";

// Where a line that is too long is broken: behind the last blank in its last part, else where it has to be, but not
// between the halves of a character.
std::size_t BreakingPoint(std::wstring_view line) {
    constexpr std::size_t LastPart = 200;
    const std::size_t blank = line.substr(0, LongestFieldLine).find_last_of(L' ');
    if (blank != std::wstring_view::npos && blank + LastPart >= LongestFieldLine) {
        return blank + 1;
    }
    return IS_HIGH_SURROGATE(line[LongestFieldLine - 1]) ? LongestFieldLine - 1 : LongestFieldLine;
}

void AppendLine(std::wstring_view line, std::wstring& text) {
    while (line.size() > LongestFieldLine) {
        const std::size_t length = BreakingPoint(line);
        text += line.substr(0, length);
        text += LineBreak;
        line.remove_prefix(length);
    }
    text += line;
}

}  // namespace

std::wstring FieldText(std::wstring_view text) {
    const bool isCut = text.size() > LongestFieldText;
    text = text.substr(0, LongestFieldText);
    std::wstring result;
    result.reserve(text.size() + text.size() / 16);
    for (;;) {
        const std::size_t end = text.find_first_of(L"\r\n");
        AppendLine(text.substr(0, end), result);
        if (end == std::wstring_view::npos) {
            break;
        }
        result += LineBreak;
        text.remove_prefix(text.substr(end).starts_with(LineBreak) ? end + 2 : end + 1);
    }
    for (wchar_t& character : result) {
        // The field would take it for the end.
        character = character == L'\0' ? L' ' : character;
    }
    if (isCut) {
        result += L"\r\n...";
    }
    return result;
}

std::wstring WithDirectionMarks(std::wstring_view properties) {
    constexpr std::wstring_view Separator = L": ";
    std::wstring marked;
    while (!properties.empty()) {
        const std::size_t end = std::min(properties.find(L'\n'), properties.size());
        const std::size_t separator = properties.substr(0, end).find(Separator);
        const std::size_t start = separator == std::wstring_view::npos ? 0 : separator + Separator.size();
        const std::wstring_view value = properties.substr(start, end - start);
        marked += properties.substr(0, start);
        if (NeedsDirectionMarks(value)) {
            marked += LeftToRightMark;
            marked += value;
            marked += LeftToRightMark;
        } else {
            marked += value;
        }
        marked += properties.substr(end, 1);
        properties.remove_prefix(std::min(end + 1, properties.size()));
    }
    return marked;
}

}  // namespace corvina
