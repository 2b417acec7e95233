// The templates of a manifest's provider: the names and types of its events' values.
#pragma once

#include <map>
#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace corvina::publisher {

class ManifestTemplates {
  public:
    // Holds references into the document of `provider`.
    explicit ManifestTemplates(pugi::xml_node provider);

    // The definition of a template as the platform gives it out: one element "template" in the manifests' namespace.
    // Null when the provider has no template of that name.
    const std::string* Find(std::string_view name);

  private:
    std::map<std::string_view, pugi::xml_node> nodes_;
    std::map<std::string_view, std::string> texts_;  // written out when first asked for
};

}  // namespace corvina::publisher
