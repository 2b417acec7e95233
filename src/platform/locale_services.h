// The port for what depends on the user's region: local time and the order of texts.
#pragma once

#include <cstdint>
#include <string_view>

namespace corvina {

class LocaleServices {
  public:
    virtual ~LocaleServices() = default;

    // Converts a time in UTC to local time. Both are counts of 100-nanosecond intervals since 1 January 1601.
    // Returns the time unchanged when it cannot be converted.
    virtual std::uint64_t ToLocalTime(std::uint64_t utc) const = 0;

    // The way back, with the difference that holds today, like the way there.
    virtual std::uint64_t ToUniversalTime(std::uint64_t local) const = 0;

    // Compares two texts without regard to case in the user's locale: negative, 0 or positive.
    virtual int CompareIgnoringCase(std::wstring_view left, std::wstring_view right) const = 0;
};

}  // namespace corvina
