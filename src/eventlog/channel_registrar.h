// Decides for each channel of a computer whether it is kept in the computer's list.
#pragma once

#include <string>

#include "eventlog/channel_list.h"
#include "eventlog/event_log_session.h"
#include "platform/debug_log.h"

namespace corvina {

class ChannelRegistrar {
  public:
    ChannelRegistrar(EventLogSession& session, ChannelLists& channels, DebugLog& debug)
        : session_(session), channels_(channels), debug_(debug) {}

    // Reads the channel's configuration and appends it to the current computer's list when it is enabled. A channel
    // whose configuration cannot be read is left out.
    void RegisterChannel(const std::wstring& path);

  private:
    EventLogSession& session_;
    ChannelLists& channels_;
    DebugLog& debug_;
};

}  // namespace corvina
