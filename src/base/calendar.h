// Points in time as the platform counts them (100-nanosecond intervals since 1 January 1601) and their calendar fields.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvina {

inline constexpr std::uint64_t FileTimeTicksPerSecond = 10'000'000;
// 1 January 1970 as a file time.
inline constexpr std::uint64_t UnixEpochAsFileTime = 116'444'736'000'000'000;

struct CalendarTime {
    std::int32_t Year = 1601;
    std::uint32_t Month = 1;  // 1 to 12
    std::uint32_t Day = 1;    // 1 to 31
    std::uint32_t Hour = 0;
    std::uint32_t Minute = 0;
    std::uint32_t Second = 0;
    std::uint32_t Ticks = 0;  // 100-nanosecond intervals below the second, 0 to 9,999,999
};

// Any 64-bit value has calendar fields; years reach 60056.
CalendarTime CalendarFromFileTime(std::uint64_t fileTime);

// None when the fields are out of range or before 1601.
std::optional<std::uint64_t> FileTimeFromCalendar(const CalendarTime& time);

}  // namespace corvina
