#include "eventlog/event_date.h"

#include "base/calendar.h"

namespace corvina {

namespace {

wchar_t* AppendNumber(wchar_t* place, std::uint32_t number, int minimumDigits) {
    wchar_t digits[10];
    int count = 0;
    do {
        digits[count++] = static_cast<wchar_t>(L'0' + number % 10);
        number /= 10;
    } while (number != 0 || count < minimumDigits);
    while (count > 0) {
        *place++ = digits[--count];
    }
    return place;
}

}  // namespace

std::wstring_view EventDateText(std::uint64_t localTime, bool english, DateBuffer& buffer) {
    const CalendarTime time = CalendarFromFileTime(localTime);
    const wchar_t betweenDays = english ? L'/' : L'.';
    const wchar_t betweenHours = english ? L':' : L'.';
    wchar_t* place = buffer.Characters;
    place = AppendNumber(place, english ? time.Month : time.Day, 2);
    *place++ = betweenDays;
    place = AppendNumber(place, english ? time.Day : time.Month, 2);
    *place++ = betweenDays;
    place = AppendNumber(place, static_cast<std::uint32_t>(time.Year), english ? 2 : 4);
    *place++ = L' ';
    place = AppendNumber(place, time.Hour, 2);
    *place++ = betweenHours;
    place = AppendNumber(place, time.Minute, 2);
    *place++ = betweenHours;
    place = AppendNumber(place, time.Second, 2);
    return {buffer.Characters, static_cast<std::size_t>(place - buffer.Characters)};
}

}  // namespace corvina
