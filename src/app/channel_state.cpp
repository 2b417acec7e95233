#include "app/channel_state.h"

#include "platform/evt_handle.h"

namespace corvina {

bool IsChannelEnabled(const EventLogSession& session, const std::wstring& channelPath) {
    if (session.CurrentSession() == nullptr) {
        return false;
    }
    EventLogApi& api = session.Api();
    const EvtHandle config(api, api.EvtOpenChannelConfig(session.CurrentSession(), channelPath.c_str(), 0));
    if (!config) {
        return false;
    }
    EVT_VARIANT enabled{};
    DWORD used = 0;
    return api.EvtGetChannelConfigProperty(config.Get(), EvtChannelConfigEnabled, 0, sizeof(enabled), &enabled,
                                           &used) &&
           enabled.Type == EvtVarTypeBoolean && enabled.BooleanVal != 0;
}

}  // namespace corvina
