// The selection of the event list, as the window of one event reads and moves it.
#pragma once

#include <cstddef>
#include <optional>

namespace corvina {

class EventSelection {
  public:
    virtual ~EventSelection() = default;

    // The first selected row, none without a selection.
    virtual std::optional<std::size_t> SelectedRow() const = 0;

    // Selects one row and no other.
    virtual void SelectOnly(std::size_t row) = 0;
};

}  // namespace corvina
