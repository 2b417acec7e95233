#include "base/calendar.h"

#include <algorithm>
#include <array>

namespace corvina {

namespace {

constexpr std::uint64_t TicksPerDay = 86'400 * FileTimeTicksPerSecond;
constexpr std::int32_t FirstYear = 1601;
constexpr std::int32_t LastYear = 60056;

// 1601 opens a cycle of 400 years, so file times divide into cycles, centuries, groups of four years and years with no
// shift of the origin. Only the last year of each group may be a leap year.
constexpr std::uint32_t DaysPerCycle = 146'097;
constexpr std::uint32_t DaysPerCentury = 36'524;
constexpr std::uint32_t DaysPerFourYears = 1'461;
constexpr std::uint32_t DaysPerYear = 365;

using MonthStarts = std::array<std::uint16_t, 13>;
constexpr MonthStarts CommonMonthStarts = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
constexpr MonthStarts LeapMonthStarts = {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366};

constexpr bool IsLeapYear(std::int32_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

void SetDate(std::uint64_t days, CalendarTime& time) {
    const auto cycle = static_cast<std::uint32_t>(days / DaysPerCycle);
    auto rest = static_cast<std::uint32_t>(days % DaysPerCycle);
    const std::uint32_t century = std::min(rest / DaysPerCentury, 3U);
    rest -= century * DaysPerCentury;
    const std::uint32_t group = rest / DaysPerFourYears;
    rest %= DaysPerFourYears;
    const std::uint32_t year = std::min(rest / DaysPerYear, 3U);
    rest -= year * DaysPerYear;

    time.Year = FirstYear + static_cast<std::int32_t>(400 * cycle + 100 * century + 4 * group + year);
    const MonthStarts& starts = IsLeapYear(time.Year) ? LeapMonthStarts : CommonMonthStarts;
    // No month is longer than 32 days, so this guess is at most one month early.
    std::uint32_t month = rest / 32;
    if (rest >= starts[month + 1]) {
        ++month;
    }
    time.Month = month + 1;
    time.Day = rest - starts[month] + 1;
}

std::uint64_t DaysBeforeYear(std::int32_t year) {
    const auto years = static_cast<std::uint64_t>(year - FirstYear);
    return years * DaysPerYear + years / 4 - years / 100 + years / 400;
}

bool FieldsAreInRange(const CalendarTime& time) {
    if (time.Year < FirstYear || time.Year > LastYear || time.Month < 1 || time.Month > 12) {
        return false;
    }
    const MonthStarts& starts = IsLeapYear(time.Year) ? LeapMonthStarts : CommonMonthStarts;
    const std::uint32_t daysInMonth = starts[time.Month] - starts[time.Month - 1];
    return time.Day >= 1 && time.Day <= daysInMonth && time.Hour < 24 && time.Minute < 60 && time.Second < 60 &&
           time.Ticks < FileTimeTicksPerSecond;
}

}  // namespace

CalendarTime CalendarFromFileTime(std::uint64_t fileTime) {
    CalendarTime time;
    SetDate(fileTime / TicksPerDay, time);
    const std::uint64_t ticksOfDay = fileTime % TicksPerDay;
    time.Ticks = static_cast<std::uint32_t>(ticksOfDay % FileTimeTicksPerSecond);
    const auto secondsOfDay = static_cast<std::uint32_t>(ticksOfDay / FileTimeTicksPerSecond);
    time.Second = secondsOfDay % 60;
    time.Minute = secondsOfDay / 60 % 60;
    time.Hour = secondsOfDay / 3600;
    return time;
}

std::optional<std::uint64_t> FileTimeFromCalendar(const CalendarTime& time) {
    if (!FieldsAreInRange(time)) {
        return std::nullopt;
    }
    const MonthStarts& starts = IsLeapYear(time.Year) ? LeapMonthStarts : CommonMonthStarts;
    const std::uint64_t days = DaysBeforeYear(time.Year) + starts[time.Month - 1] + time.Day - 1;
    const std::uint64_t seconds = time.Hour * 3600ULL + time.Minute * 60ULL + time.Second;
    const std::uint64_t ticksOfDay = seconds * FileTimeTicksPerSecond + time.Ticks;
    // The last year that 64 bits can hold is not complete.
    if (days > (UINT64_MAX - ticksOfDay) / TicksPerDay) {
        return std::nullopt;
    }
    return days * TicksPerDay + ticksOfDay;
}

}  // namespace corvina
