#include "base/parse_number.h"

namespace corvina {

std::optional<unsigned> HexDigitValue(wchar_t digit) {
    if (digit >= L'0' && digit <= L'9') {
        return static_cast<unsigned>(digit - L'0');
    }
    if (digit >= L'a' && digit <= L'f') {
        return static_cast<unsigned>(digit - L'a') + 10;
    }
    if (digit >= L'A' && digit <= L'F') {
        return static_cast<unsigned>(digit - L'A') + 10;
    }
    return std::nullopt;
}

std::optional<std::uint64_t> ParseUnsigned(std::wstring_view text, std::uint64_t highest) {
    std::uint64_t base = 10;
    if (text.starts_with(L"0x") || text.starts_with(L"0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    if (text.empty()) {
        return std::nullopt;
    }
    std::uint64_t number = 0;
    for (const wchar_t character : text) {
        const std::optional<unsigned> digit = HexDigitValue(character);
        if (!digit || *digit >= base || *digit > highest || number > (highest - *digit) / base) {
            return std::nullopt;
        }
        number = number * base + *digit;
    }
    return number;
}

}  // namespace corvina
