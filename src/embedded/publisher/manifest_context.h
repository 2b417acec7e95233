// What the providers of one manifest share while it is read: its strings, the bound on all texts together, and the list
// of problems.
#pragma once

#include <cstddef>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/publisher/localized_strings.h"

namespace corvina::publisher {

class ManifestContext {
  public:
    // Holds references into the document of `manifest`. `problems` may be null.
    ManifestContext(pugi::xml_node manifest, std::vector<std::wstring>* problems)
        : strings_(manifest), problems_(problems) {}

    // Adds "problem: subject" to the list, which ends after 1,000.
    void Report(std::string_view problem, std::string_view subject);

    // A text that several places may refer to. Many events may refer to one text, which each of them then holds: all
    // copies together are bounded, and beyond that there are none.
    std::optional<std::wstring> Copy(std::string_view text);

    // The text of an element's attribute "message"; none when it has no such attribute or the string is missing.
    std::optional<std::wstring> Message(pugi::xml_node node);

  private:
    LocalizedStrings strings_;
    std::vector<std::wstring>* problems_;
    std::size_t charactersLeft_ = std::size_t{16} << 20;
};

}  // namespace corvina::publisher
