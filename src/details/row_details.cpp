#include "details/row_details.h"

namespace corvina {

std::optional<EventName> RowDetails::NameOf(std::size_t row) const {
    if (row >= rows_.Size()) {
        return std::nullopt;
    }
    const EventRow& values = rows_.Row(row);
    const LoadedView& view = loader_.View();
    EventName name;
    name.Source = view.Kind == LoadKind::SavedLogFile ? EventSource::SavedLogFile : EventSource::Channel;
    // A structured view mixes logs: each row names its own.
    name.Log = view.Kind == LoadKind::SavedLogFile ? view.SavedLogKey
               : view.Kind == LoadKind::Channel    ? view.ChannelName
                                                   : std::wstring(rows_.Text(values.ChannelName));
    name.Provider = rows_.Text(values.ProviderName);
    name.RecordId = values.RecordId;
    return name;
}

FetchResult RowDetails::Fetch(const EventName& event, EventTexts& texts) {
    return details_.FetchEventByRecordId(event.Log, event.Source, event.Provider,
                                         static_cast<std::uint32_t>(event.RecordId), texts);
}

}  // namespace corvina
