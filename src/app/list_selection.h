// The selection of the event list in the main window, for the window of one event.
#pragma once

#include "app/application.h"
#include "details/event_selection.h"

namespace corvina {

class ListSelection final : public EventSelection {
  public:
    explicit ListSelection(const Views& shown) : shown_(shown) {}

    std::optional<std::size_t> SelectedRow() const override { return shown_.Window.SelectedRow(); }
    void SelectOnly(std::size_t row) override { shown_.Load.SelectRow(row); }

  private:
    const Views& shown_;
};

}  // namespace corvina
