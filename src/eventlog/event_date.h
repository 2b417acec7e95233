// The date texts of the event list.
#pragma once

#include <cstdint>
#include <string_view>

namespace corvina {

// Room for the longest date: years have up to five digits.
struct DateBuffer {
    wchar_t Characters[32];
};

// "03/05/2024 14:07:09" (month first) in English, "05.03.2024 14.07.09" in every other language: the full stops between
// hours, minutes and seconds are wanted. `localTime` counts 100-nanosecond intervals since 1 January 1601.
std::wstring_view EventDateText(std::uint64_t localTime, bool english, DateBuffer& buffer);

}  // namespace corvina
