// The display texts of an event: from its provider's manifest or program files, else from what the computer that
// forwarded it has written already, else from the platform's standard values.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "embedded/decoded_event.h"
#include "embedded/publisher/publisher_manifest.h"
#include "platform/event_log_types.h"

namespace corvina::embedded {

// Forms the text of one kind. `publisher` may be none; `event` may be none for the provider's name. Several keywords
// stand one after the other, each with a closing zero. Returns an error code: error::MessageNotFound when nothing has
// such a text, error::MessageIdNotFound when the provider's description lacks it, error::UnresolvedValueInsert when the
// text was formed but names a value that the event does not have, error::EventLogFileCorrupt when the event cannot be
// decoded.
std::uint32_t FormatEventText(EVT_FORMAT_MESSAGE_FLAGS kind, const publisher::Publisher* publisher, DecodedEvent* event,
                              std::wstring& text);

// Forms a message by its identifier. With values, they take the places of %1, %2 ...; without any, the places stay.
// Returns an error code as above.
std::uint32_t FormatMessageById(const publisher::Publisher& publisher, std::uint32_t messageId,
                                std::span<const EVT_VARIANT> values, std::wstring& text);

}  // namespace corvina::embedded
