#include "embedded/rendering_xml.h"

#include "base/xml_escape.h"

namespace corvina::embedded {
namespace {

void AppendElement(std::wstring_view name, std::wstring_view text, std::wstring& xml) {
    xml.append(L"<").append(name).append(L">");
    AppendXmlEscaped(text, L'\'', xml);
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
    AppendXmlEscaped(info.Culture, L'\'', xml);
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
