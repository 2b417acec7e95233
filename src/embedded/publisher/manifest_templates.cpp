#include "embedded/publisher/manifest_templates.h"

#include "embedded/publisher/localized_strings.h"

namespace corvina::publisher {

namespace {

// Appends what the document's writer puts out to a text.
class TextWriter : public pugi::xml_writer {
  public:
    explicit TextWriter(std::string& text) : text_(text) {}
    void write(const void* data, std::size_t size) override { text_.append(static_cast<const char*>(data), size); }

  private:
    std::string& text_;
};

std::string WrittenOut(pugi::xml_node definition) {
    std::string text = "<template xmlns=\"http://schemas.microsoft.com/win/2004/08/events\">";
    TextWriter writer(text);
    for (const pugi::xml_node value : definition.children()) {
        value.print(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    }
    text += "</template>";
    return text;
}

}  // namespace

ManifestTemplates::ManifestTemplates(pugi::xml_node provider) {
    for (const pugi::xml_node list : provider.children()) {
        if (LocalName(list) != "templates") {
            continue;
        }
        for (const pugi::xml_node definition : list.children()) {
            if (LocalName(definition) == "template") {
                nodes_.emplace(definition.attribute("tid").value(), definition);
            }
        }
    }
}

const std::string* ManifestTemplates::Find(std::string_view name) {
    const auto node = nodes_.find(name);
    if (node == nodes_.end()) {
        return nullptr;
    }
    const auto [text, isNew] = texts_.try_emplace(name);
    if (isNew) {
        text->second = WrittenOut(node->second);
    }
    return &text->second;
}

}  // namespace corvina::publisher
