#include "query/stored_filter_text.h"

#include <cstddef>
#include <optional>

#include "base/format_text.h"
#include "base/parse_number.h"
#include "base/xml_escape.h"

namespace corvina {
namespace {

constexpr std::wstring_view Blanks = L" \t\r\n";

constexpr std::wstring_view EscapeStart = L"_x";
constexpr std::size_t EscapeLength = std::wstring_view(L"_xHHHH_").size();

bool MustBeEscaped(std::wstring_view text, std::size_t index) {
    const wchar_t character = text[index];
    if (character == L' ') {
        return index == 0 || index + 1 == text.size();
    }
    return Blanks.find(character) != std::wstring_view::npos || text.substr(index).starts_with(EscapeStart) ||
           !CanStandInXml(text, index);
}

// The character of the escape at the front of a text, if there is one.
std::optional<wchar_t> EscapedCharacter(std::wstring_view text) {
    if (text.size() < EscapeLength || !text.starts_with(EscapeStart) || text[EscapeLength - 1] != L'_') {
        return std::nullopt;
    }
    unsigned number = 0;
    for (const wchar_t character : text.substr(EscapeStart.size(), 4)) {
        const std::optional<unsigned> digit = HexDigitValue(character);
        if (!digit) {
            return std::nullopt;
        }
        number = number << 4 | *digit;
    }
    return static_cast<wchar_t>(number);
}

}  // namespace

std::wstring_view TrimmedFilterText(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(Blanks);
    return first == std::wstring_view::npos ? std::wstring_view()
                                            : text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::wstring EscapedFilterText(std::wstring_view text) {
    std::wstring escaped;
    escaped.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (MustBeEscaped(text, index)) {
            escaped += FormatText(L"_x%04X_", {static_cast<std::uint32_t>(text[index])});
        } else {
            escaped += text[index];
        }
    }
    return escaped;
}

std::wstring UnescapedFilterText(std::wstring_view escaped) {
    escaped = TrimmedFilterText(escaped);
    std::wstring text;
    text.reserve(escaped.size());
    while (!escaped.empty()) {
        const std::optional<wchar_t> character = EscapedCharacter(escaped);
        text += character.value_or(escaped.front());
        escaped.remove_prefix(character ? EscapeLength : 1);
    }
    return text;
}

}  // namespace corvina
