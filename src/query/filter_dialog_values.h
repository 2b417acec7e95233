// What a query needs to know of the dialog in which a filter is being set. The dialog's window implements it.
#pragma once

#include <string>

#include "query/event_id_list.h"
#include "query/filter_criteria.h"

namespace corvina {

enum class FilterBox { Channels, EventIds, Keywords, Providers, User, Computer };

class FilterDialogValues {
  public:
    virtual ~FilterDialogValues() = default;

    // The whole text of a box.
    virtual std::wstring BoxText(FilterBox box) const = 0;

    virtual TimeCriterion Time() const = 0;
    virtual LevelMarks Levels() const = 0;
};

// The text of a box as far as it counts, which is 2,599 characters (UTF-16 units on Windows). What is longer is cut
// plainly, even between the halves of a surrogate pair.
std::wstring ReadBox(const FilterDialogValues& dialog, FilterBox box);

// The list of event IDs that stands in its box (see ParseEventIdList).
EventIdFragments ParseEventIdListFromDialog(const FilterDialogValues& dialog);

}  // namespace corvina
