// One event as the list shows, sorts and searches it. A row is a small value: its texts are references into the row
// store's pool, where equal texts stand once.
#pragma once

#include <cstdint>

namespace corvina {

// A text of the row store's pool; the default is the empty text.
enum class TextReference : std::uint32_t { Empty = 0 };

struct EventRow {
    TextReference DateText{};
    TextReference TaskText{};
    TextReference EventIdText{};
    TextReference UserText{};
    TextReference ComputerText{};
    TextReference ProviderName{};
    TextReference ChannelName{};
    TextReference ProviderGuidText{};
    TextReference ActivityIdText{};
    TextReference RelatedActivityIdText{};
    TextReference UserSidText{};
    TextReference VersionText{};
    TextReference LevelText{};
    TextReference TaskColumnText{};
    TextReference OpcodeText{};
    TextReference ProcessIdText{};
    TextReference ThreadIdText{};
    TextReference KeywordsText{};
    TextReference RecordIdText{};
    TextReference MessageText{};  // only when the Message column is visible

    std::uint64_t Keywords = 0;
    std::uint64_t RecordId = 0;
    std::uint64_t LocalTime = 0;  // 100-nanosecond intervals since 1 January 1601, local time
    std::uint32_t LevelImage = 0;
    std::uint32_t EventId = 0;
    std::uint32_t ProcessId = 0;
    std::uint32_t ThreadId = 0;
    std::uint16_t Task = 0;
    std::uint8_t Version = 0;
    std::uint8_t Level = 0;
    std::uint8_t Opcode = 0;
};

}  // namespace corvina
