#include "eventlog/event_description.h"

#include "base/format_text.h"
#include "eventlog/event_xml.h"

namespace corvina {

namespace {

constexpr int NoDescriptionNote = 8;

}  // namespace

std::wstring_view EventDescriber::Describe(EVT_HANDLE metadata, EVT_HANDLE event, std::uint32_t eventId,
                                           std::wstring_view source) {
    const std::wstring_view message = resolver_.FormatEventPart(metadata, event, EvtFormatMessageEvent);
    if (!message.empty()) {
        return message;
    }
    text_ = FormatText(language_.Text(NoDescriptionNote), {eventId, source});
    text_ += DataValueLines(RenderEventXml(api_, debug_, event, xml_));
    return text_;
}

std::wstring_view EventDescriber::DescribeForCondition(EVT_HANDLE metadata, EVT_HANDLE event) {
    const std::wstring_view message = resolver_.FormatEventPart(metadata, event, EvtFormatMessageEvent);
    if (!message.empty()) {
        return message;
    }
    text_ = DataValueLines(RenderEventXml(api_, debug_, event, xml_));
    return text_;
}

}  // namespace corvina
