// The details pane under the event list: four text fields.
#pragma once

#include <string_view>

namespace corvina {

class DetailsPaneView {
  public:
    virtual ~DetailsPaneView() = default;

    // Left and right system properties (lines ending in "\n"), the description, and the event's XML.
    virtual void ShowDetails(std::wstring_view leftProperties, std::wstring_view rightProperties,
                             std::wstring_view description, std::wstring_view xml) = 0;
};

}  // namespace corvina
