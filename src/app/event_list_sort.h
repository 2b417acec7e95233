// Sorting the event list by a column, as a click on its header asks for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "eventlog/event_columns.h"
#include "eventlog/row_store.h"
#include "platform/locale_services.h"

namespace corvina {

enum class SortDirection { Ascending, Descending };

// The order of all rows by one column, for RowStore::Reorder. Texts are compared in the user's locale without regard to
// case; dates, identifiers, masks and codes by their numbers, not by what is shown of them.
std::vector<std::uint32_t> SortedOrder(const RowStore& rows, Column column, SortDirection direction,
                                       const LocaleServices& locale);

// What the list remembers of its sorting. There is one direction for all columns: every click turns it round, so the
// first click of all sorts descending.
class EventListSort {
  public:
    // Turns the direction round, sorts all rows by the column and remembers both.
    void HeaderClicked(std::size_t position, Column column, RowStore& rows, const LocaleServices& locale);

    SortDirection Direction() const { return direction_; }
    std::optional<std::size_t> Position() const { return position_; }
    std::optional<Column> SortedColumn() const { return column_; }

  private:
    SortDirection direction_ = SortDirection::Ascending;
    std::optional<std::size_t> position_;
    std::optional<Column> column_;
};

}  // namespace corvina
