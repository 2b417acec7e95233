// What the event log tells about a log as a whole.
#pragma once

#include <cstdint>
#include <string>

#include "platform/event_log_api.h"

namespace corvina {

// The number of records in a channel's log; 0 when it cannot be read.
std::uint64_t NumberOfLogRecords(EventLogApi& api, EVT_HANDLE session, const std::wstring& channelPath);

}  // namespace corvina
