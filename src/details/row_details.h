// Fetches the events of rows of the event list anew: for the pane, for the window of one event, and for copies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "details/event_details.h"
#include "eventlog/log_loader.h"
#include "eventlog/row_store.h"

namespace corvina {

// What names the event of a row outside the list. It stays true when the list loads something else.
struct EventName {
    std::wstring Log;  // a channel path or the settings key of a saved log
    EventSource Source = EventSource::Channel;
    std::wstring Provider;
    std::uint64_t RecordId = 0;
};

class RowDetails {
  public:
    RowDetails(EventDetails& details, const RowStore& rows, const LogLoader& loader)
        : details_(details), rows_(rows), loader_(loader) {}

    // None for a row that does not exist.
    std::optional<EventName> NameOf(std::size_t row) const;

    // As EventDetails::FetchEventByRecordId.
    FetchResult Fetch(const EventName& event, EventTexts& texts);

  private:
    EventDetails& details_;
    const RowStore& rows_;
    const LogLoader& loader_;
};

}  // namespace corvina
