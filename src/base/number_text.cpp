#include "base/number_text.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>

namespace corvina {
namespace {

constexpr std::int64_t LargestInteger = std::numeric_limits<int>::max();
constexpr std::int64_t SmallestInteger = std::numeric_limits<int>::min();

bool IsDigit(wchar_t character) {
    return character >= L'0' && character <= L'9';
}

void SkipBlanks(std::wstring_view& text) {
    while (!text.empty() && (text.front() == L' ' || (text.front() >= L'\t' && text.front() <= L'\r'))) {
        text.remove_prefix(1);
    }
}

// Takes a sign off the front; true for a minus sign.
bool TakeSign(std::wstring_view& text) {
    if (text.empty() || (text.front() != L'-' && text.front() != L'+')) {
        return false;
    }
    const bool isNegative = text.front() == L'-';
    text.remove_prefix(1);
    return isNegative;
}

void TakeDigits(std::wstring_view& text, std::string& digits) {
    while (!text.empty() && IsDigit(text.front())) {
        digits += static_cast<char>(text.front());
        text.remove_prefix(1);
    }
}

// An exponent counts only with digits behind it; "2e" is the number 2.
void TakeExponent(std::wstring_view text, std::string& number, bool& isNegative) {
    if (text.empty() || (text.front() != L'e' && text.front() != L'E')) {
        return;
    }
    text.remove_prefix(1);
    const bool minus = TakeSign(text);
    std::string digits;
    TakeDigits(text, digits);
    if (!digits.empty()) {
        isNegative = minus;
        number += minus ? "e-" : "e";
        number += digits;
    }
}

}  // namespace

int IntegerFromText(std::wstring_view text) {
    SkipBlanks(text);
    const bool isNegative = TakeSign(text);
    std::int64_t value = 0;
    while (!text.empty() && IsDigit(text.front()) && value <= LargestInteger) {
        value = value * 10 + (text.front() - L'0');
        text.remove_prefix(1);
    }
    if (isNegative) {
        return static_cast<int>(-value < SmallestInteger ? SmallestInteger : -value);
    }
    return static_cast<int>(value > LargestInteger ? LargestInteger : value);
}

int IntegerFromFloatingText(std::wstring_view text) {
    SkipBlanks(text);
    const bool isNegative = TakeSign(text);
    std::string number;
    TakeDigits(text, number);
    if (!text.empty() && text.front() == L'.') {
        text.remove_prefix(1);
        if (number.empty()) {
            number += '0';
        }
        number += '.';
        TakeDigits(text, number);
    }
    bool isTiny = false;
    if (!number.empty()) {
        TakeExponent(text, number, isTiny);
    }
    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        value = isTiny ? 0 : std::numeric_limits<double>::max();
    }
    if (isNegative) {
        value = -value;
    }
    if (value >= static_cast<double>(LargestInteger)) {
        return static_cast<int>(LargestInteger);
    }
    return static_cast<int>(value <= static_cast<double>(SmallestInteger) ? static_cast<double>(SmallestInteger)
                                                                          : value);
}

}  // namespace corvina
