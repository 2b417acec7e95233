// The list of event IDs that a user types into a filter ("1, 3, 5-99, -76, -5-37": IDs, ranges, and with a minus sign
// what to leave out), turned into two conditions over the EventID of an event.
#pragma once

#include <string>
#include <string_view>

namespace corvina {

// Both are parts of a filter's text, escaped for a query document as far as their own comparison signs go. They belong
// together: a query that selects with the first must suppress with the second.
struct EventIdFragments {
    std::wstring IncludedEventIds;  // empty when the list includes nothing
    std::wstring ExcludedEventIds;  // empty when the list excludes nothing

    friend bool operator==(const EventIdFragments&, const EventIdFragments&) = default;
};

// Items keep their order and are copied as they stand, blanks (U+0020) aside: whether they are numbers is for the event
// log to judge, which refuses the finished query. An empty item ends the list.
EventIdFragments ParseEventIdList(std::wstring_view list);

}  // namespace corvina
