#include "embedded/rendering_xml.h"

namespace corvina::embedded {
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

void AppendEscaped(std::wstring_view text, std::wstring& xml) {
    for (std::size_t index = 0; index < text.size(); ++index) {
        const wchar_t character = text[index];
        if (character == L'&') {
            xml += L"&amp;";
        } else if (character == L'<') {
            xml += L"&lt;";
        } else if (character == L'>') {
            xml += L"&gt;";
        } else if (character == L'\'') {
            xml += L"&apos;";
        } else {
            xml += IsForbidden(character) || IsHalfSurrogate(text, index) ? Replacement : character;
        }
    }
}

void AppendElement(std::wstring_view name, std::wstring_view text, std::wstring& xml) {
    xml.append(L"<").append(name).append(L">");
    AppendEscaped(text, xml);
    xml.append(L"</").append(name).append(L">");
}

}  // namespace

std::wstring WithRenderingInfo(std::wstring_view eventXml, const evtx::RenderingInfo& info) {
    const std::size_t end = eventXml.rfind(L"</");
    if (end == std::wstring_view::npos) {
        return std::wstring(eventXml);
    }
    std::wstring xml(eventXml.substr(0, end));
    xml += L"<RenderingInfo Culture='";
    AppendEscaped(info.Culture, xml);
    xml += L"'>";
    AppendElement(L"Message", info.Message, xml);
    AppendElement(L"Level", info.Level, xml);
    AppendElement(L"Task", info.Task, xml);
    AppendElement(L"Opcode", info.Opcode, xml);
    AppendElement(L"Channel", info.Channel, xml);
    AppendElement(L"Provider", info.Provider, xml);
    xml += L"<Keywords>";
    for (const std::wstring& keyword : info.Keywords) {
        AppendElement(L"Keyword", keyword, xml);
    }
    xml += L"</Keywords></RenderingInfo>";
    xml += eventXml.substr(end);
    return xml;
}

}  // namespace corvina::embedded
