// The string tables of a manifest: what "$(string.id)" stands for.
#pragma once

#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string_view>

namespace corvina::publisher {

// The name of an element without its namespace prefix.
std::string_view LocalName(pugi::xml_node node);

// Holds references into the document, which has to outlive it.
class LocalizedStrings {
  public:
    // Takes the tables of an "instrumentationManifest" element. English comes first; what it lacks is taken from the
    // other cultures in the order of the manifest.
    explicit LocalizedStrings(pugi::xml_node manifest);

    // The text of a message reference: the string's for "$(string.id)", none when there is no such string. Anything
    // else is its own text.
    std::optional<std::string_view> Resolve(std::string_view reference) const;

  private:
    void AddCulture(pugi::xml_node resources);

    std::map<std::string_view, std::string_view> texts_;
};

}  // namespace corvina::publisher
