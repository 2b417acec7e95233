// Whole numbers as events and filters write them: everything that fits into 64 bits, with sign or without, is exact,
// and numbers beyond keep their place before or behind all of those.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace corvina::xpath {

struct Integer {
    std::int32_t High = 0;  // the bits from the 64th on: the sign, or what is too large
    std::uint64_t Low = 0;

    static constexpr Integer Of(std::uint64_t number) { return {0, number}; }
    static constexpr Integer OfSigned(std::int64_t number) {
        return {number < 0 ? -1 : 0, static_cast<std::uint64_t>(number)};
    }

    bool IsUnsigned64() const { return High == 0; }

    // Whether the low 64 bits are all there is to it, as an unsigned number or as a signed one.
    bool IsIn64Bits() const { return High == 0 || (High == -1 && static_cast<std::int64_t>(Low) < 0); }

    friend constexpr auto operator<=>(const Integer&, const Integer&) = default;
};

// Reads decimal digits, or hexadecimal ones after "0x" or "0X", either with a minus sign in front. None when the text
// is anything else, blanks included.
std::optional<Integer> IntegerFromText(std::wstring_view text);

}  // namespace corvina::xpath
