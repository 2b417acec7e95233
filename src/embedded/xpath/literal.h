// A constant in a filter, with everything that it can be read as. What counts is decided by the value of the event that
// it is compared with, so it is read once for all kinds of values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/identifiers.h"
#include "embedded/xpath/integer.h"

namespace corvina::xpath {

struct Literal {
    static Literal OfText(std::wstring text);  // one in quotes
    static Literal OfNumber(const Integer& number);

    bool IsText = false;
    std::wstring Text;  // when IsText
    std::optional<Integer> Number;
    std::optional<double> Real;
    std::optional<bool> Boolean;
    std::optional<std::uint64_t> Time;  // file time, UTC
    std::optional<GuidBytes> Guid;
    std::optional<std::basic_string<std::byte>> Sid;
};

}  // namespace corvina::xpath
