// The enabled channels of each computer in the tree, in the order in which the computer listed them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace corvina {

struct ChannelRecord {
    std::wstring Path;
    std::wstring OwningPublisher;  // may be empty
    bool Enabled = true;           // only enabled channels are stored
    bool ClassicEventlog = false;
};

class ChannelLists {
  public:
    void Clear(std::uint32_t computerIndex) { lists_.erase(computerIndex); }
    void Append(std::uint32_t computerIndex, ChannelRecord record) {
        lists_[computerIndex].push_back(std::move(record));
    }

    // The list of a computer; empty for an unknown index.
    const std::vector<ChannelRecord>& Of(std::uint32_t computerIndex) const;

    // The record that a tree node names; null when there is none.
    const ChannelRecord* Find(std::uint32_t computerIndex, std::int32_t channelIndex) const;

  private:
    std::map<std::uint32_t, std::vector<ChannelRecord>> lists_;
};

}  // namespace corvina
