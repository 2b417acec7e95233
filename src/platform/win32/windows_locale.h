// Local time and the order of texts, as the user's regional settings have them.
#pragma once

#include "platform/locale_services.h"

namespace corvina {

class WindowsLocale : public LocaleServices {
  public:
    // Uses today's difference to UTC for every date, summer or winter, as the system's own conversion of file times
    // does.
    std::uint64_t ToLocalTime(std::uint64_t utc) const override;
    std::uint64_t ToUniversalTime(std::uint64_t local) const override;

    int CompareIgnoringCase(std::wstring_view left, std::wstring_view right) const override;
};

}  // namespace corvina
