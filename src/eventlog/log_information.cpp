#include "eventlog/log_information.h"

#include "eventlog/event_values.h"
#include "platform/evt_handle.h"

namespace corvina {

std::uint64_t NumberOfLogRecords(EventLogApi& api, EVT_HANDLE session, const std::wstring& channelPath) {
    const EvtHandle log(api, api.EvtOpenLog(session, channelPath.c_str(), EvtOpenChannelPath));
    if (!log) {
        return 0;
    }
    EVT_VARIANT value{};
    DWORD used = 0;
    if (!api.EvtGetLogInfo(log.Get(), EvtLogNumberOfLogRecords, sizeof value, &value, &used)) {
        return 0;
    }
    return NumberValue(value);
}

}  // namespace corvina
