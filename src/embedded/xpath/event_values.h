// The event that a filter is asked about: an interface to whatever holds it. Parts are decoded when they are asked for.
#pragma once

#include <cstdint>
#include <optional>

#include "embedded/evtx/event_tree.h"
#include "embedded/evtx/system_field.h"
#include "embedded/evtx/system_values.h"

namespace corvina::xpath {

// System values that were read without looking at the rest of the event.
struct SystemPart {
    const evtx::SystemValues* Values = nullptr;  // none when the event cannot be decoded
    evtx::SystemFieldSet Certain;  // the fields that are for sure what the event's XML shows, or absent as in it
};

class EventValues {
  public:
    virtual ~EventValues() = default;

    // The wanted values; what was asked for before stays.
    virtual SystemPart System(evtx::SystemFieldSet wanted) = 0;

    // The whole event; none when it cannot be decoded.
    virtual const evtx::EventTree* Tree() = 0;
};

// The record id that the event's XML has; none when it has none or cannot be decoded.
std::optional<std::uint64_t> RecordIdOf(EventValues& event);

}  // namespace corvina::xpath
