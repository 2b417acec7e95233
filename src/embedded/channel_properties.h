// A channel's configuration as the platform's properties.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "embedded/channel.h"

namespace corvina::embedded {

// Writes one property as an EVT_VARIANT. `publishers` are the names for EvtChannelPublisherList. Properties of tracing
// channels that no store has (control GUID, level, keywords) are null. Returns an error code: error::InvalidParameter
// for an unknown property, error::InsufficientBuffer.
std::uint32_t WriteChannelProperty(const Channel& channel, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                   std::span<const std::wstring> publishers, DWORD bufferSize, void* buffer,
                                   DWORD* used);

}  // namespace corvina::embedded
