#include "eventlog/channel_list.h"

namespace corvina {

const std::vector<ChannelRecord>& ChannelLists::Of(std::uint32_t computerIndex) const {
    static const std::vector<ChannelRecord> none;
    const auto list = lists_.find(computerIndex);
    return list == lists_.end() ? none : list->second;
}

const ChannelRecord* ChannelLists::Find(std::uint32_t computerIndex, std::int32_t channelIndex) const {
    const std::vector<ChannelRecord>& list = Of(computerIndex);
    return channelIndex >= 0 && static_cast<std::size_t>(channelIndex) < list.size()
               ? &list[static_cast<std::size_t>(channelIndex)]
               : nullptr;
}

}  // namespace corvina
