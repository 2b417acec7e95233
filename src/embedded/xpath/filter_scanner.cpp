#include "embedded/xpath/filter_scanner.h"

#include <algorithm>

namespace corvina::xpath {
namespace {

// Beyond ASCII everything counts as a letter: names in events are not bound to any alphabet.
bool BeginsName(wchar_t character) {
    const wchar_t lower = static_cast<wchar_t>(character | 0x20);
    return character == L'_' || (lower >= L'a' && lower <= L'z') || character >= 0x80;
}

bool IsDigit(wchar_t character) {
    return character >= L'0' && character <= L'9';
}

bool ContinuesName(wchar_t character) {
    return BeginsName(character) || IsDigit(character) || character == L'-' || character == L'.';
}

std::size_t LengthOfName(std::wstring_view text) {
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), ContinuesName) - text.begin());
}

}  // namespace

void FilterScanner::SkipBlanks() {
    const std::size_t first = rest_.find_first_not_of(L" \t\r\n");
    rest_.remove_prefix(first == std::wstring_view::npos ? rest_.size() : first);
}

void FilterScanner::Pass(std::size_t count) {
    rest_.remove_prefix(count);
    SkipBlanks();
}

bool FilterScanner::Take(std::wstring_view sign) {
    const bool found = rest_.starts_with(sign);
    if (found) {
        Pass(sign.size());
    }
    return found;
}

bool FilterScanner::TakeWord(std::wstring_view word) {
    const bool found = rest_.substr(0, LengthOfName(rest_)) == word;
    if (found) {
        Pass(word.size());
    }
    return found;
}

std::wstring_view FilterScanner::TakeName() {
    if (!BeginsName(Next())) {
        return {};
    }
    const std::wstring_view name = rest_.substr(0, LengthOfName(rest_));
    Pass(name.size());
    return name;
}

// What looks like a name that begins with a digit is the number, or nothing: "1or" and "5-10" are neither.
std::optional<Integer> FilterScanner::TakeNumber() {
    FilterScanner ahead = *this;
    const bool negative = ahead.Take(L"-");
    if (!IsDigit(ahead.Next())) {
        return std::nullopt;
    }
    const std::wstring_view digits = ahead.rest_.substr(0, LengthOfName(ahead.rest_));
    const std::optional<Integer> number =
        IntegerFromText(negative ? L"-" + std::wstring(digits) : std::wstring(digits));
    if (number) {
        ahead.Pass(digits.size());
        *this = ahead;
    }
    return number;
}

std::optional<std::wstring> FilterScanner::TakeText() {
    const wchar_t quote = Next();
    if (quote != L'\'' && quote != L'"') {
        return std::nullopt;
    }
    const std::size_t end = rest_.find(quote, 1);
    if (end == std::wstring_view::npos) {
        return std::nullopt;
    }
    std::wstring text(rest_.substr(1, end - 1));
    Pass(end + 1);
    return text;
}

}  // namespace corvina::xpath
