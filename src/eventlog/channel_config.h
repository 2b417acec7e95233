// A channel's configuration as the program shows it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/debug_log.h"
#include "platform/event_log_api.h"

namespace corvina {

struct ChannelConfig {
    std::wstring LogFilePath = L"N/A";
    std::int32_t MaxSizeKB = -1;
    bool Enabled = false;
    bool Retention = false;
    bool AutoBackup = false;
};

// Reads all properties in the order of their identifiers until one fails. Returns 0, the error of the property that
// failed, or error::OutOfMemory; what was read before the failure stays in `snapshot`, the rest has its defaults.
std::uint32_t ReadChannelConfig(EventLogApi& api, DebugLog& debug, EVT_HANDLE channelConfig, ChannelConfig& snapshot);

// The kind of a channel (EVT_CHANNEL_TYPE); none when it cannot be read.
std::optional<std::uint32_t> ReadChannelType(EventLogApi& api, EVT_HANDLE session, const std::wstring& channelPath);

}  // namespace corvina
