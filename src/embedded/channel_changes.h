// Changes to a channel's configuration that were made through a handle and are not saved yet.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "embedded/channel.h"

namespace corvina::embedded {

class ChannelChanges {
  public:
    // Takes a new value for one property of `channel`; a maximum size is rounded up to whole chunks. Returns an error
    // code: InvalidParameter for a property that does not exist, a value of another type than the property's and a
    // maximum size of 0 or beyond what can be kept; AccessDenied for what a store cannot change: classic channels are
    // always on, and where a log lies, who may read it and how events reach it is not decided here.
    std::uint32_t Set(const Channel& channel, EVT_CHANNEL_CONFIG_PROPERTY_ID property, const EVT_VARIANT& value);

    // The channel as it will be.
    Channel AppliedTo(const Channel& channel) const;

    // Whether the changes leave `channel` in a state that means something: a full log can only be backed up when it is
    // retained. The two are set one after the other, so only the result counts, and only when one of them was set.
    bool AreConsistentFor(const Channel& channel) const;

    // The lines of "channels.ini" that hold the changes.
    std::vector<IniEntry> Entries() const;

    void Clear() { *this = {}; }

  private:
    std::optional<bool> enabled_;
    std::optional<bool> retention_;
    std::optional<bool> autoBackup_;
    std::optional<std::uint64_t> maximumSize_;
};

}  // namespace corvina::embedded
