// The text of a query document over one or more channels.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace corvina {

// Joins the fragments that are not empty into one condition that asks for all of them.
std::wstring JoinFragments(std::initializer_list<std::wstring_view> fragments);

// One line of XML: of each channel of the comma-separated list, all events for which `condition` holds (all events when
// it is empty), without those for which `exclusion` holds, whatever their other properties (nothing is left out when it
// is empty). Both conditions are placed as they stand and have been escaped as far as they need it; channels are
// copied. A document of more than 16 Mi characters is left without its end, for the event log to refuse.
std::wstring QueryListText(std::wstring_view channels, std::wstring_view condition, std::wstring_view exclusion);

}  // namespace corvina
