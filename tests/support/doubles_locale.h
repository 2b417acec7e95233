// A region whose rules a test can know: a fixed distance from UTC, and texts compared by their lower-case letters.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <string_view>

#include "platform/locale_services.h"

namespace corvina::test {

class PlainLocale final : public LocaleServices {
  public:
    std::uint64_t ToLocalTime(std::uint64_t utc) const override { return utc + OffsetTicks; }
    std::uint64_t ToUniversalTime(std::uint64_t local) const override { return local - OffsetTicks; }

    int CompareIgnoringCase(std::wstring_view left, std::wstring_view right) const override {
        ++Comparisons;
        const std::size_t common = std::min(left.size(), right.size());
        for (std::size_t index = 0; index < common; ++index) {
            const auto first = std::towlower(static_cast<std::wint_t>(left[index]));
            const auto second = std::towlower(static_cast<std::wint_t>(right[index]));
            if (first != second) {
                return first < second ? -1 : 1;
            }
        }
        return left.size() == right.size() ? 0 : (left.size() < right.size() ? -1 : 1);
    }

    std::uint64_t OffsetTicks = 0;
    mutable std::size_t Comparisons = 0;
};

}  // namespace corvina::test
