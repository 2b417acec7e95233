// Opening a session with the event log of a computer by its name.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/event_log_api.h"
#include "platform/evt_handle.h"

namespace corvina {

struct Credentials {
    std::wstring_view User;
    std::wstring_view Password;
};

// Opens a session with the given credentials, else with the caller's own logon. `error` becomes 0 or, when no session
// was opened, the error code. Copies of the password are wiped. The system may put off the way to the computer until
// the session is first used.
EvtHandle OpenRemoteSession(EventLogApi& api, std::wstring_view computer, const std::optional<Credentials>& credentials,
                            std::uint32_t& error);

}  // namespace corvina
