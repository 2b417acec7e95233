#include "base/calendar.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <tuple>

namespace corvina {
namespace {

constexpr std::uint64_t TicksPerDay = 864'000'000'000;

auto Fields(const CalendarTime& time) {
    return std::tuple(time.Year, time.Month, time.Day, time.Hour, time.Minute, time.Second, time.Ticks);
}

TEST(Calendar, KnownTimes) {
    EXPECT_EQ(Fields(CalendarFromFileTime(0)), std::tuple(1601, 1, 1, 0, 0, 0, 0));
    EXPECT_EQ(Fields(CalendarFromFileTime(UnixEpochAsFileTime)), std::tuple(1970, 1, 1, 0, 0, 0, 0));
    // 1,709,644,029 seconds after the start of 1970, and a fraction.
    EXPECT_EQ(Fields(CalendarFromFileTime(UnixEpochAsFileTime + 17'096'440'291'234'567)),
              std::tuple(2024, 3, 5, 13, 7, 9, 1'234'567));
    EXPECT_EQ(Fields(CalendarFromFileTime(UINT64_MAX)), std::tuple(60056, 5, 28, 5, 36, 10, 9'551'615));
}

// Counts every day on from the first one by the rules of the calendar, over two of its cycles of 400 years.
TEST(Calendar, EveryDayFollowsTheOneBefore) {
    CalendarTime expected;
    for (std::uint64_t day = 0; day < 2 * 146'097; ++day) {
        const std::uint64_t lastTick = day * TicksPerDay + TicksPerDay - 1;
        const CalendarTime time = CalendarFromFileTime(lastTick);
        ASSERT_EQ(Fields(time), std::tuple(expected.Year, expected.Month, expected.Day, 23, 59, 59, 9'999'999)) << day;
        ASSERT_EQ(FileTimeFromCalendar(time), lastTick) << day;

        const bool leap = (expected.Year % 4 == 0 && expected.Year % 100 != 0) || expected.Year % 400 == 0;
        const bool shortMonth =
            expected.Month == 4 || expected.Month == 6 || expected.Month == 9 || expected.Month == 11;
        const std::uint32_t days = expected.Month == 2 ? (leap ? 29U : 28U) : (shortMonth ? 30U : 31U);
        CalendarTime beyond = expected;
        beyond.Day = days + 1;
        ASSERT_EQ(FileTimeFromCalendar(beyond), std::nullopt) << day;
        if (++expected.Day > days) {
            expected.Day = 1;
            if (++expected.Month > 12) {
                expected.Month = 1;
                ++expected.Year;
            }
        }
    }
    EXPECT_EQ(expected.Year, 2401);
}

TEST(Calendar, FieldsOutOfRangeGiveNoTime) {
    const CalendarTime good{2024, 2, 29, 23, 59, 59, 9'999'999};
    ASSERT_TRUE(FileTimeFromCalendar(good));
    const auto refused = [&good](auto change) {
        CalendarTime time = good;
        change(time);
        return !FileTimeFromCalendar(time);
    };
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Year = 2023; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Year = 1600; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Year = INT32_MIN; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Year = INT32_MAX; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Month = 0; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Month = 13; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Day = 0; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Hour = 24; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Minute = 60; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Second = 60; }));
    EXPECT_TRUE(refused([](CalendarTime& time) { time.Ticks = 10'000'000; }));
}

TEST(Calendar, TheLastTimeIsTheLastThatFits) {
    CalendarTime last = CalendarFromFileTime(UINT64_MAX);
    EXPECT_EQ(FileTimeFromCalendar(last), UINT64_MAX);
    ++last.Ticks;
    EXPECT_EQ(FileTimeFromCalendar(last), std::nullopt);
}

}  // namespace
}  // namespace corvina
