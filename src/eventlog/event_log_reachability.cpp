#include "eventlog/event_log_reachability.h"

#include <cstdint>
#include <optional>

#include "base/format_text.h"
#include "eventlog/remote_session.h"
#include "platform/error_codes.h"

namespace corvina {
namespace {

// A session alone proves little: the system may open it without having spoken to the computer. 0 or an error code.
std::uint32_t QueryApplicationLog(EventLogApi& api, const std::wstring& computer) {
    std::uint32_t error = error::Success;
    const EvtHandle session = OpenRemoteSession(api, computer, std::nullopt, error);
    if (!session) {
        return error;
    }
    const EvtHandle query(api, api.EvtQuery(session.Get(), L"Application", nullptr, EvtQueryChannelPath));
    return query ? error::Success : api.GetLastError();
}

}  // namespace

bool EventLogReachability::IsReachable(const std::wstring& computer) {
    const std::uint32_t error = QueryApplicationLog(api_, computer);
    if (error != error::Success) {
        debug_.Write(FormatText(L"Failed to connect to remote computer. Error code is %d.\n", {error}));
    }
    return error == error::Success;
}

}  // namespace corvina
