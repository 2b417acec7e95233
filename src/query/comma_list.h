// The one way in which lists that a user types (channels, providers, keywords, event IDs) are taken apart.
#pragma once

#include <string_view>
#include <vector>

namespace corvina {

// The items between the commas of a list, as views into it. A comma after the last item may be there or not. An empty
// item ends the list, whatever follows it: "a,,b" has one item and ",a" has none. Nothing is trimmed.
std::vector<std::wstring_view> CommaListItems(std::wstring_view list);

}  // namespace corvina
