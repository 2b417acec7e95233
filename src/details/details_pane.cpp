#include "details/details_pane.h"

#include "eventlog/event_xml.h"

namespace corvina {

void DetailsPane::ShowRow(std::size_t row) {
    const auto event = details_.NameOf(row);
    if (!event) {
        return;
    }
    if (details_.Fetch(*event, texts_) == FetchResult::Found) {
        readableXml_ = IndentedXml(texts_.Xml);
    }
    view_.ShowDetails(texts_.LeftProperties, texts_.RightProperties, texts_.Description, readableXml_);
}

void DetailsPane::ShowNoEvents(std::wstring_view text) {
    texts_ = {std::wstring(text), std::wstring(text), std::wstring(text), {}};
    readableXml_.clear();
    view_.ShowDetails(texts_.LeftProperties, texts_.RightProperties, texts_.Description, readableXml_);
}

}  // namespace corvina
