#include "base/xml_escape.h"

namespace corvina {
namespace {

constexpr wchar_t Replacement = 0xFFFD;

bool IsForbidden(wchar_t character) {
    const bool control = character < 0x20 && character != L'\t' && character != L'\n' && character != L'\r';
    return control || character == 0xFFFE || character == 0xFFFF;
}

// Half surrogates would make the document unreadable; where wide characters are UTF-16, whole pairs pass.
bool IsHalfSurrogate(std::wstring_view text, std::size_t index) {
    const auto isHigh = [](wchar_t character) { return character >= 0xD800 && character <= 0xDBFF; };
    const auto isLow = [](wchar_t character) { return character >= 0xDC00 && character <= 0xDFFF; };
    if constexpr (sizeof(wchar_t) == 2) {
        if (isHigh(text[index])) {
            return index + 1 >= text.size() || !isLow(text[index + 1]);
        }
        return isLow(text[index]) && (index == 0 || !isHigh(text[index - 1]));
    }
    return isHigh(text[index]) || isLow(text[index]);
}

}  // namespace

bool CanStandInXml(std::wstring_view text, std::size_t index) {
    return !IsForbidden(text[index]) && !IsHalfSurrogate(text, index);
}

void AppendXmlEscaped(std::wstring_view text, wchar_t quotationMark, std::wstring& xml) {
    for (std::size_t index = 0; index < text.size(); ++index) {
        const wchar_t character = text[index];
        if (character == L'&') {
            xml += L"&amp;";
        } else if (character == L'<') {
            xml += L"&lt;";
        } else if (character == L'>') {
            xml += L"&gt;";
        } else if (character == quotationMark) {
            xml += character == L'"' ? L"&quot;" : L"&apos;";
        } else {
            xml += CanStandInXml(text, index) ? character : Replacement;
        }
    }
}

}  // namespace corvina
