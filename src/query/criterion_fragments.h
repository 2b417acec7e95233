// One function for each criterion of a filter: the fragment of a filter's text that asks for it, to be placed in the
// predicate of an event's System element. Comparison signs are escaped for the query document; texts that were typed
// are copied as they stand, since the event log is the judge of them. A criterion that is not set gives the empty text.
// The list of event IDs has a page of its own (event_id_list.h).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/locale_services.h"
#include "query/filter_criteria.h"
#include "query/keyword_table.h"

namespace corvina {

// The choices 1 to 5 ask for events of the last hour, 12 hours, 24 hours, 7 days and 30 days. (Lists of dialogs leave
// out the 7 days, so that their entry "Last 30 days" is choice 4. Stored filters mean that, too: it stays.)
// Custom moments are the user's local time and are written in UTC; one that is no moment of the calendar is written as
// it stands.
std::wstring TimeFragment(const TimeCriterion& time, const LocaleServices& locale);

// Information stands for level 0 as well as level 4: many publishers log plain information without a level.
std::wstring LevelFragment(const LevelMarks& levels);

// Asks for any of the named keywords. A name stands for the first keyword of the table that contains it, without regard
// to case, and for nothing when there is none. The masks are added, not united: a keyword that is named twice asks for
// the next bit instead.
std::wstring KeywordFragment(std::wstring_view names, std::span<const KeywordRecord> table);

std::wstring ProviderFragment(std::wstring_view names);

// `sid`: the user's security identifier as text.
std::wstring UserFragment(std::wstring_view sid);

std::wstring ComputerFragment(std::wstring_view name);

std::wstring TaskFragment(std::span<const std::uint32_t> tasks);

}  // namespace corvina
