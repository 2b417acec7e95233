#include "embedded/xpath/integer.h"

#include <limits>

#include "base/parse_number.h"

namespace corvina::xpath {
namespace {

constexpr Integer AboveAll{1, 0};
constexpr Integer BelowAll{-2, 0};

}  // namespace

std::optional<Integer> IntegerFromText(std::wstring_view text) {
    const bool negative = text.starts_with(L'-');
    text.remove_prefix(negative ? 1 : 0);
    const bool hexadecimal = text.starts_with(L"0x") || text.starts_with(L"0X");
    text.remove_prefix(hexadecimal ? 2 : 0);
    if (text.empty()) {
        return std::nullopt;
    }
    const unsigned base = hexadecimal ? 16 : 10;
    std::uint64_t number = 0;
    bool tooLarge = false;
    for (const wchar_t character : text) {
        const std::optional<unsigned> digit = HexDigitValue(character);
        if (!digit || *digit >= base) {
            return std::nullopt;
        }
        tooLarge = tooLarge || number > (std::numeric_limits<std::uint64_t>::max() - *digit) / base;
        number = number * base + *digit;
    }
    if (tooLarge) {
        return negative ? BelowAll : AboveAll;
    }
    return Integer{negative && number != 0 ? -1 : 0, negative ? 0 - number : number};
}

}  // namespace corvina::xpath
