// Fills the details pane under the event list from the row that is selected.
#pragma once

#include <cstddef>
#include <string_view>

#include "details/details_pane_view.h"
#include "details/event_details.h"
#include "eventlog/log_loader.h"
#include "eventlog/row_store.h"

namespace corvina {

class DetailsPane {
  public:
    DetailsPane(EventDetails& details, const RowStore& rows, const LogLoader& loader, DetailsPaneView& view)
        : details_(details), rows_(rows), loader_(loader), view_(view) {}

    // Fetches the event of a row and shows it; nothing happens for a row that does not exist.
    void ShowRow(std::size_t row);

    // Shows a text in the first three fields and nothing in the fourth: the view has no events.
    void ShowNoEvents(std::wstring_view text);

    // What the pane shows.
    const EventTexts& Texts() const { return texts_; }

  private:
    EventDetails& details_;
    const RowStore& rows_;
    const LogLoader& loader_;
    DetailsPaneView& view_;
    EventTexts texts_;
};

}  // namespace corvina
