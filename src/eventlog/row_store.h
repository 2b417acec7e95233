// The rows of the current view, in the order in which the list shows them, with the pool of their texts. Sized for a
// million rows and more: a row is one small value in a block that never moves, the order is a list of indexes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "eventlog/event_columns.h"
#include "eventlog/event_row.h"

namespace corvina {

class RowStore {
  public:
    RowStore();
    ~RowStore();
    RowStore(const RowStore&) = delete;
    RowStore& operator=(const RowStore&) = delete;

    // Destroys all rows and texts and fixes the columns that rows are rendered with from now on. Slot n of a row is the
    // text of the n-th visible column; since all rows of a view share their columns, the slots are kept once, not per
    // row.
    void Reset(const VisibleColumns& columns);
    const VisibleColumns& Columns() const;

    // The same text always gives the same reference. A text of up to 16 Mi characters; longer ones are cut.
    TextReference AddText(std::wstring_view text);

    // The text behind a reference, followed by a zero character. Valid until Reset.
    std::wstring_view Text(TextReference reference) const;

    void Append(const EventRow& row);
    std::size_t Size() const;
    const EventRow& Row(std::size_t index) const;

    // The text of the shown column at `position`; empty when there is no such row or position.
    std::wstring_view CellText(std::size_t index, std::size_t position) const;
    // The text of a column of a row, visible or not (empty when it was not computed).
    TextReference ColumnText(const EventRow& row, Column column) const;

    // Erases every row for which `selected` answers true, asked from the last row to the first; later rows move up.
    void EraseIf(const std::function<bool(std::size_t)>& selected);

    // Puts the rows into a new order: new row n is the present row order[n]. `order` is a permutation of all rows.
    void Reorder(std::span<const std::uint32_t> order);

    // Bytes that rows and texts occupy.
    std::size_t MemoryUsed() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace corvina
