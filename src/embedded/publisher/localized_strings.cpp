#include "embedded/publisher/localized_strings.h"

#include <algorithm>
#include <vector>

namespace corvina::publisher {

namespace {

constexpr std::string_view ReferenceStart = "$(string.";
constexpr std::string_view PreferredCulture = "en-us";

bool IsPreferredCulture(std::string_view culture) {
    return std::equal(culture.begin(), culture.end(), PreferredCulture.begin(), PreferredCulture.end(),
                      [](char left, char right) {
                          const char lower = left >= 'A' && left <= 'Z' ? static_cast<char>(left + 32) : left;
                          return lower == right;
                      });
}

}  // namespace

std::string_view LocalName(pugi::xml_node node) {
    const std::string_view name = node.name();
    return name.substr(name.find(':') + 1);
}

LocalizedStrings::LocalizedStrings(pugi::xml_node manifest) {
    std::vector<pugi::xml_node> cultures;
    for (const pugi::xml_node localization : manifest.children()) {
        if (LocalName(localization) != "localization") {
            continue;
        }
        for (const pugi::xml_node resources : localization.children()) {
            if (LocalName(resources) == "resources") {
                cultures.push_back(resources);
            }
        }
    }
    std::stable_partition(cultures.begin(), cultures.end(), [](pugi::xml_node resources) {
        return IsPreferredCulture(resources.attribute("culture").value());
    });
    for (const pugi::xml_node resources : cultures) {
        AddCulture(resources);
    }
}

std::optional<std::string_view> LocalizedStrings::Resolve(std::string_view reference) const {
    if (!reference.starts_with(ReferenceStart) || !reference.ends_with(')')) {
        return reference;
    }
    reference.remove_prefix(ReferenceStart.size());
    reference.remove_suffix(1);
    const auto found = texts_.find(reference);
    if (found == texts_.end()) {
        return std::nullopt;
    }
    return found->second;
}

void LocalizedStrings::AddCulture(pugi::xml_node resources) {
    for (const pugi::xml_node table : resources.children()) {
        if (LocalName(table) != "stringTable") {
            continue;
        }
        for (const pugi::xml_node text : table.children()) {
            if (LocalName(text) == "string") {
                texts_.try_emplace(text.attribute("id").value(), text.attribute("value").value());
            }
        }
    }
}

}  // namespace corvina::publisher
