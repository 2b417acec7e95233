// Fills the details pane under the event list from the row that is selected.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "details/details_pane_view.h"
#include "details/row_details.h"

namespace corvina {

class DetailsPane {
  public:
    DetailsPane(RowDetails& details, DetailsPaneView& view) : details_(details), view_(view) {}

    // Fetches the event of a row and shows it; nothing happens for a row that does not exist.
    void ShowRow(std::size_t row);

    // Shows a text in the first three fields and nothing in the fourth: the view has no events.
    void ShowNoEvents(std::wstring_view text);

    // What the pane shows; its XML as it came, on one line, and indented for reading.
    const EventTexts& Texts() const { return texts_; }
    const std::wstring& ReadableXml() const { return readableXml_; }

  private:
    RowDetails& details_;
    DetailsPaneView& view_;
    EventTexts texts_;
    std::wstring readableXml_;
};

}  // namespace corvina
