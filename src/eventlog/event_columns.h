// The columns that an event list can show, in their fixed order, and which of them are visible. The order is also the
// order of the settings texts, so numbers must never change.
#pragma once

#include <bitset>
#include <cstddef>

namespace corvina {

enum class Column : unsigned char {
    Type = 0,
    Date,
    Source,
    TaskCategory,
    EventId,
    User,
    Computer,
    Keywords,
    ProcessCode,
    Protocol,
    ProcessId,
    ThreadId,
    CorrelationId,
    RelativeCorrelationId,
    EventRecordId,
    Message,
    VendorGuid,
    SecurityUserId
};

inline constexpr std::size_t ColumnCount = 18;

// Bit n set: column n is visible. Hidden columns are not computed when events are rendered.
using VisibleColumns = std::bitset<ColumnCount>;

}  // namespace corvina
