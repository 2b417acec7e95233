#include "eventlog/event_xml.h"

#include <algorithm>
#include <cstddef>
#include <pugixml.hpp>
#include <string>

#include "base/format_text.h"
#include "base/utf.h"

namespace corvina {

namespace {

// No event is nested this deep unless it was made to use up memory.
constexpr int MaximumIndentedDepth = 200;

// Indenting costs blanks in proportion to the depth of each element: a record of many deep ones would become a hundred
// times as long.
constexpr std::string_view Indentation = "  ";
constexpr std::size_t MostIndentation = 4'000'000;

class TextWriter : public pugi::xml_writer {
  public:
    void write(const void* data, std::size_t size) override { text_.append(static_cast<const char*>(data), size); }
    const std::string& Text() const { return text_; }

  private:
    std::string text_;
};

bool Parse(std::wstring_view xml, pugi::xml_document& document) {
    const std::string utf8 = Utf8FromWide(xml);
    return static_cast<bool>(document.load_buffer(utf8.data(), utf8.size(), pugi::parse_default, pugi::encoding_utf8));
}

pugi::xml_node FirstElement(const pugi::xml_node& node) {
    return node.find_child([](const pugi::xml_node& child) { return child.type() == pugi::node_element; });
}

pugi::xml_node NextElement(pugi::xml_node node) {
    do {
        node = node.next_sibling();
    } while (node && node.type() != pugi::node_element);
    return node;
}

// Calls `visit(element, depth)` for `root` and every element below it, in document order and without recursion, since
// the depth of the document is not ours.
template <typename Visit>
void ForEachElement(const pugi::xml_node& root, Visit&& visit) {
    pugi::xml_node node = root;
    int depth = 0;
    while (node) {
        visit(node, depth);
        if (const pugi::xml_node child = FirstElement(node)) {
            node = child;
            ++depth;
            continue;
        }
        while (node != root && !NextElement(node)) {
            node = node.parent();
            --depth;
        }
        node = node == root ? pugi::xml_node() : NextElement(node);
    }
}

std::string_view LocalName(const pugi::xml_node& node) {
    const std::string_view name = node.name();
    const std::size_t prefix = name.find(':');
    return prefix == std::string_view::npos ? name : name.substr(prefix + 1);
}

void AppendDataLine(const pugi::xml_node& leaf, std::wstring& lines) {
    std::string value;
    for (const pugi::xml_node& part : leaf.children()) {
        value += part.value();
    }
    const bool isData = LocalName(leaf) == "Data";
    const std::string_view name = isData ? std::string_view(leaf.attribute("Name").value()) : LocalName(leaf);
    if (value.empty() && (name.empty() || !isData)) {
        return;  // an empty section or an unnamed value without text: there is nothing to show
    }
    if (!name.empty()) {
        lines += WideFromUtf8(name);
        lines += L": ";
    }
    lines += WideFromUtf8(value);
    lines += L'\n';
}

}  // namespace

std::wstring_view RenderEventXml(EventLogApi& api, DebugLog& debug, EVT_HANDLE event, PropertyBuffer& buffer) {
    DWORD count = 0;
    const FillResult result = buffer.FillBytes(api, [&](DWORD size, void* data, DWORD* used) {
        return api.EvtRender(nullptr, event, EvtRenderEventXml, size, data, used, &count);
    });
    switch (result) {
        case FillResult::Filled:
            return buffer.Text();
        case FillResult::OutOfMemory:
            debug.Write(L"malloc failed\n");
            return {};
        case FillResult::Failed:
            debug.Write(FormatText(L"EvtRender failed with %d\n", {buffer.Error()}));
            return {};
    }
    return {};
}

std::wstring IndentedXml(std::wstring_view xml) {
    pugi::xml_document document;
    if (!Parse(xml, document)) {
        return std::wstring(xml);
    }
    int deepest = 0;
    std::size_t indentation = 0;
    ForEachElement(document.document_element(), [&](const pugi::xml_node&, int depth) {
        deepest = std::max(deepest, depth);
        indentation += Indentation.size() * static_cast<std::size_t>(depth);
    });
    if (deepest > MaximumIndentedDepth || indentation > MostIndentation) {
        return std::wstring(xml);
    }
    TextWriter writer;
    document.save(writer, Indentation.data(), pugi::format_indent | pugi::format_no_declaration, pugi::encoding_utf8);
    return WideFromUtf8(writer.Text());
}

std::wstring DataValueLines(std::wstring_view xml) {
    pugi::xml_document document;
    std::wstring lines;
    if (!Parse(xml, document)) {
        return lines;
    }
    for (pugi::xml_node section = FirstElement(document.document_element()); section; section = NextElement(section)) {
        const std::string_view name = LocalName(section);
        if (name == "System" || name == "RenderingInfo") {
            continue;
        }
        ForEachElement(section, [&](const pugi::xml_node& element, int) {
            if (!FirstElement(element)) {
                AppendDataLine(element, lines);
            }
        });
    }
    return lines;
}

}  // namespace corvina
