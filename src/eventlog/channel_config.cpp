#include "eventlog/channel_config.h"

#include "base/format_text.h"
#include "eventlog/event_values.h"
#include "eventlog/property_buffer.h"
#include "platform/evt_handle.h"

namespace corvina {

namespace {

FillResult ReadProperty(EventLogApi& api, EVT_HANDLE config, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                        PropertyBuffer& buffer) {
    return buffer.FillBytes(api, [&](DWORD size, void* data, DWORD* used) {
        return api.EvtGetChannelConfigProperty(config, property, 0, size, static_cast<EVT_VARIANT*>(data), used);
    });
}

void Keep(EVT_CHANNEL_CONFIG_PROPERTY_ID property, const EVT_VARIANT& value, ChannelConfig& snapshot) {
    switch (property) {
        case EvtChannelConfigEnabled:
            snapshot.Enabled = BooleanValue(value);
            break;
        case EvtChannelLoggingConfigRetention:
            snapshot.Retention = BooleanValue(value);
            break;
        case EvtChannelLoggingConfigAutoBackup:
            snapshot.AutoBackup = BooleanValue(value);
            break;
        case EvtChannelLoggingConfigMaxSize:
            snapshot.MaxSizeKB = static_cast<std::int32_t>(static_cast<std::uint32_t>(NumberValue(value) >> 10));
            break;
        case EvtChannelLoggingConfigLogFilePath:
            snapshot.LogFilePath = TextValue(value);
            break;
        default:
            break;
    }
}

}  // namespace

std::uint32_t ReadChannelConfig(EventLogApi& api, DebugLog& debug, EVT_HANDLE channelConfig, ChannelConfig& snapshot) {
    snapshot = ChannelConfig{};
    PropertyBuffer buffer;
    for (int id = EvtChannelConfigEnabled; id < EvtChannelConfigPropertyIdEND; ++id) {
        const auto property = static_cast<EVT_CHANNEL_CONFIG_PROPERTY_ID>(id);
        switch (ReadProperty(api, channelConfig, property, buffer)) {
            case FillResult::OutOfMemory:
                debug.Write(L"realloc failed\n");
                return error::OutOfMemory;
            case FillResult::Failed:
                debug.Write(FormatText(L"EvtGetChannelConfigProperty failed with %d\n", {buffer.Error()}));
                return buffer.Error();
            case FillResult::Filled:
                if (buffer.ValueCapacity() > 0) {
                    Keep(property, buffer.Values()[0], snapshot);
                }
                break;
        }
    }
    return error::Success;
}

std::optional<std::uint32_t> ReadChannelType(EventLogApi& api, EVT_HANDLE session, const std::wstring& channelPath) {
    const EvtHandle config(api, api.EvtOpenChannelConfig(session, channelPath.c_str(), 0));
    PropertyBuffer buffer;
    if (!config || ReadProperty(api, config.Get(), EvtChannelConfigType, buffer) != FillResult::Filled ||
        buffer.ValueCapacity() == 0 || buffer.Values()[0].Type != EvtVarTypeUInt32) {
        return std::nullopt;
    }
    return buffer.Values()[0].UInt32Val;
}

}  // namespace corvina
