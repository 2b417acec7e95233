// Reads the system properties of events, one event after the other, with one render context and one buffer.
#pragma once

#include <cstdint>

#include "eventlog/event_values.h"
#include "eventlog/property_buffer.h"
#include "platform/debug_log.h"
#include "platform/evt_handle.h"

namespace corvina {

class SystemPropertiesReader {
  public:
    SystemPropertiesReader(EventLogApi& api, DebugLog& debug) : api_(api), debug_(debug) {}

    // Renders an event's system properties. Returns 0 or the error, which has been written to the debug log.
    std::uint32_t Read(EVT_HANDLE event);

    // The properties that were read last, valid until the next Read.
    SystemProperties Properties() const { return SystemProperties(complete_ ? buffer_.Values() : values_); }

  private:
    EventLogApi& api_;
    DebugLog& debug_;
    EvtHandle context_;
    PropertyBuffer buffer_;
    bool complete_ = false;
    EVT_VARIANT values_[EvtSystemPropertyIdEND] = {};  // when fewer properties come than there are
};

}  // namespace corvina
