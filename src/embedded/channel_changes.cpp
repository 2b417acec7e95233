#include "embedded/channel_changes.h"

#include <string>

#include "embedded/evtx/log_file.h"
#include "platform/error_codes.h"

namespace corvina::embedded {
namespace {

std::uint32_t TakeBoolean(const EVT_VARIANT& value, std::optional<bool>& change) {
    if (value.Type != EvtVarTypeBoolean) {
        return error::InvalidParameter;
    }
    change = value.BooleanVal != FALSE;
    return error::Success;
}

std::uint32_t TakeSize(const EVT_VARIANT& value, std::optional<std::uint64_t>& change) {
    if (value.Type != EvtVarTypeUInt64 || value.UInt64Val == 0 || value.UInt64Val > LargestMaximumSize) {
        return error::InvalidParameter;
    }
    change = (value.UInt64Val + evtx::ChunkSize - 1) / evtx::ChunkSize * evtx::ChunkSize;
    return error::Success;
}

std::wstring TextOf(bool value) {
    return value ? L"true" : L"false";
}

}  // namespace

std::uint32_t ChannelChanges::Set(const Channel& channel, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                  const EVT_VARIANT& value) {
    switch (static_cast<int>(property)) {
        case EvtChannelConfigEnabled:
            if (value.Type == EvtVarTypeBoolean && value.BooleanVal == FALSE && channel.Classic) {
                return error::AccessDenied;
            }
            return TakeBoolean(value, enabled_);
        case EvtChannelLoggingConfigRetention:
            return TakeBoolean(value, retention_);
        case EvtChannelLoggingConfigAutoBackup:
            return TakeBoolean(value, autoBackup_);
        case EvtChannelLoggingConfigMaxSize:
            return TakeSize(value, maximumSize_);
        default:
            return property >= 0 && property < EvtChannelConfigPropertyIdEND ? error::AccessDenied
                                                                             : error::InvalidParameter;
    }
}

Channel ChannelChanges::AppliedTo(const Channel& channel) const {
    Channel changed = channel;
    changed.Enabled = enabled_.value_or(channel.Enabled);
    changed.Retention = retention_.value_or(channel.Retention);
    changed.AutoBackup = autoBackup_.value_or(channel.AutoBackup);
    changed.MaximumSize = maximumSize_.value_or(channel.MaximumSize);
    return changed;
}

bool ChannelChanges::AreConsistentFor(const Channel& channel) const {
    const Channel changed = AppliedTo(channel);
    return (!retention_ && !autoBackup_) || changed.Retention || !changed.AutoBackup;
}

std::vector<IniEntry> ChannelChanges::Entries() const {
    std::vector<IniEntry> entries;
    if (enabled_) {
        entries.emplace_back(L"Enabled", TextOf(*enabled_));
    }
    if (retention_) {
        entries.emplace_back(L"Retention", TextOf(*retention_));
    }
    if (autoBackup_) {
        entries.emplace_back(L"AutoBackup", TextOf(*autoBackup_));
    }
    if (maximumSize_) {
        entries.emplace_back(L"MaxSize", std::to_wstring(*maximumSize_));
    }
    return entries;
}

}  // namespace corvina::embedded
