// Finds out whether a computer can be reached by asking its event log for something that every computer has.
#pragma once

#include <string>

#include "platform/computer_reachability.h"
#include "platform/debug_log.h"
#include "platform/event_log_api.h"

namespace corvina {

class EventLogReachability final : public ComputerReachability {
  public:
    EventLogReachability(EventLogApi& api, DebugLog& debug) : api_(api), debug_(debug) {}

    // Opens a session with the user's own logon and queries the log "Application" in it. A failure goes to the debug
    // log. Sessions of others stay as they are.
    bool IsReachable(const std::wstring& computer) override;

  private:
    EventLogApi& api_;
    DebugLog& debug_;
};

}  // namespace corvina
