// The description of an event: its formatted message or, when there is none, a note that says so and the event's data
// values, so that nothing that the event holds is hidden.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "eventlog/message_resolver.h"
#include "eventlog/property_buffer.h"
#include "i18n/language.h"
#include "platform/debug_log.h"
#include "platform/event_log_api.h"

namespace corvina {

class EventDescriber {
  public:
    EventDescriber(EventLogApi& api, MessageResolver& resolver, const i18n::Language& language, DebugLog& debug)
        : api_(api), resolver_(resolver), language_(language), debug_(debug) {}

    // The description as it is shown. Valid until the next call of this object or its resolver.
    std::wstring_view Describe(EVT_HANDLE metadata, EVT_HANDLE event, std::uint32_t eventId, std::wstring_view source);

    // The part of the description that comes from the event itself: the message, else the data values without the note.
    // This is what the condition on the description is tested against, since the note's own words belong to no event.
    std::wstring_view DescribeForCondition(EVT_HANDLE metadata, EVT_HANDLE event);

  private:
    EventLogApi& api_;
    MessageResolver& resolver_;
    const i18n::Language& language_;
    DebugLog& debug_;
    PropertyBuffer xml_;
    std::wstring text_;
};

}  // namespace corvina
