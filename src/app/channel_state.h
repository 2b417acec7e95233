// Whether a channel is switched on, as its configuration says at the moment.
#pragma once

#include <string>

#include "eventlog/event_log_session.h"

namespace corvina {

// False also when the configuration cannot be read, or when there is no session to read it from.
bool IsChannelEnabled(const EventLogSession& session, const std::wstring& channelPath);

}  // namespace corvina
