#include "details/details_pane.h"

#include "eventlog/event_xml.h"

namespace corvina {

void DetailsPane::ShowRow(std::size_t row) {
    if (row >= rows_.Size()) {
        return;
    }
    // Copies: an error box during the fetch lets a load begin, which replaces the rows.
    const EventRow& values = rows_.Row(row);
    const auto recordId = static_cast<std::uint32_t>(values.RecordId);
    const std::wstring provider(rows_.Text(values.ProviderName));
    const LoadedView& view = loader_.View();
    const bool isFile = view.Kind == LoadKind::SavedLogFile;
    // A structured view mixes logs: each row names its own.
    const std::wstring log = isFile                           ? view.SavedLogKey
                             : view.Kind == LoadKind::Channel ? view.ChannelName
                                                              : std::wstring(rows_.Text(values.ChannelName));
    details_.FetchEventByRecordId(log, isFile ? EventSource::SavedLogFile : EventSource::Channel, provider, recordId,
                                  texts_);
    view_.ShowDetails(texts_.LeftProperties, texts_.RightProperties, texts_.Description, IndentedXml(texts_.Xml));
}

void DetailsPane::ShowNoEvents(std::wstring_view text) {
    texts_ = {std::wstring(text), std::wstring(text), std::wstring(text), {}};
    view_.ShowDetails(texts_.LeftProperties, texts_.RightProperties, texts_.Description, texts_.Xml);
}

}  // namespace corvina
