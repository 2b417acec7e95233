#include "embedded/channel_properties.h"

#include "base/path_text.h"
#include "embedded/variant_row.h"

namespace corvina::embedded {
namespace {

// Full access for the system and administrators, reading for everybody who is logged on.
constexpr std::wstring_view DefaultAccess = L"O:BAG:SYD:(A;;0xf0007;;;SY)(A;;0x7;;;BA)(A;;0x1;;;IU)";

// The platform's defaults for how events reach a log; nothing in a store depends on them.
constexpr std::uint32_t DefaultBufferSize = 64;  // KB
constexpr std::uint32_t DefaultMaximumBuffers = 64;
constexpr std::uint32_t DefaultLatency = 1000;  // milliseconds
constexpr std::uint32_t SystemTimeClock = 0;
constexpr std::uint32_t PublishingSid = 1;
constexpr std::uint32_t DefaultFileMaximum = 1;

}  // namespace

std::uint32_t WriteChannelProperty(const Channel& channel, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                   std::span<const std::wstring> publishers, DWORD bufferSize, void* buffer,
                                   DWORD* used) {
    VariantRow<1> row;
    std::wstring path;
    switch (static_cast<int>(property)) {
        case EvtChannelConfigEnabled:
            row.SetBoolean(0, channel.Enabled);
            break;
        case EvtChannelConfigIsolation:
            row.SetUInt32(0, EvtChannelIsolationTypeApplication);
            break;
        case EvtChannelConfigType:
            row.SetUInt32(0, static_cast<std::uint32_t>(channel.Type));
            break;
        case EvtChannelConfigOwningPublisher:
            row.SetText(0, channel.OwningPublisher);
            break;
        case EvtChannelConfigClassicEventlog:
            row.SetBoolean(0, channel.Classic);
            break;
        case EvtChannelConfigAccess:
            row.SetText(0, DefaultAccess);
            break;
        case EvtChannelLoggingConfigRetention:
            row.SetBoolean(0, channel.Retention);
            break;
        case EvtChannelLoggingConfigAutoBackup:
            row.SetBoolean(0, channel.AutoBackup);
            break;
        case EvtChannelLoggingConfigMaxSize:
            row.SetUInt64(0, channel.MaximumSize);
            break;
        case EvtChannelLoggingConfigLogFilePath:
            path = TextOfPath(channel.File);
            row.SetText(0, path);
            break;
        case EvtChannelPublishingConfigLevel:
        case EvtChannelPublishingConfigKeywords:
        case EvtChannelPublishingConfigControlGuid:
            break;
        case EvtChannelPublishingConfigBufferSize:
            row.SetUInt32(0, DefaultBufferSize);
            break;
        case EvtChannelPublishingConfigMinBuffers:
            row.SetUInt32(0, 0);
            break;
        case EvtChannelPublishingConfigMaxBuffers:
            row.SetUInt32(0, DefaultMaximumBuffers);
            break;
        case EvtChannelPublishingConfigLatency:
            row.SetUInt32(0, DefaultLatency);
            break;
        case EvtChannelPublishingConfigClockType:
            row.SetUInt32(0, SystemTimeClock);
            break;
        case EvtChannelPublishingConfigSidType:
            row.SetUInt32(0, PublishingSid);
            break;
        case EvtChannelPublisherList:
            return WriteTextArray(publishers, bufferSize, buffer, used);
        case EvtChannelPublishingConfigFileMax:
            row.SetUInt32(0, DefaultFileMaximum);
            break;
        default:
            return error::InvalidParameter;
    }
    return row.Write(bufferSize, buffer, used);
}

}  // namespace corvina::embedded
