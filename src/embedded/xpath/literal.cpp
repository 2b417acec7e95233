#include "embedded/xpath/literal.h"

#include <charconv>
#include <utility>

#include "base/utf.h"
#include "embedded/evtx/time_text.h"

namespace corvina::xpath {
namespace {

std::optional<double> RealFromText(std::wstring_view text) {
    const std::string narrow = Utf8FromWide(text);
    double number = 0;
    const auto [end, error] = std::from_chars(narrow.data(), narrow.data() + narrow.size(), number);
    const bool whole = error == std::errc() && end == narrow.data() + narrow.size();
    return whole ? std::optional(number) : std::nullopt;
}

double RealFromInteger(const Integer& number) {
    constexpr double TwoTo64 = 18446744073709551616.0;
    return static_cast<double>(number.High) * TwoTo64 + static_cast<double>(number.Low);
}

std::optional<bool> BooleanFromInteger(const Integer& number) {
    const bool isBoolean = number.IsUnsigned64() && number.Low <= 1;
    return isBoolean ? std::optional(number.Low == 1) : std::nullopt;
}

}  // namespace

Literal Literal::OfNumber(const Integer& number) {
    Literal literal;
    literal.Number = number;
    literal.Real = RealFromInteger(number);
    literal.Boolean = BooleanFromInteger(number);
    return literal;
}

Literal Literal::OfText(std::wstring text) {
    Literal literal;
    if (const auto number = IntegerFromText(text)) {
        literal = OfNumber(*number);
    } else {
        literal.Real = RealFromText(text);
    }
    if (text == L"true" || text == L"false") {
        literal.Boolean = text == L"true";
    }
    literal.Time = evtx::FileTimeFromText(text);
    literal.Guid = ParseGuid(text);
    literal.Sid = ParseSid(text);
    literal.IsText = true;
    literal.Text = std::move(text);
    return literal;
}

}  // namespace corvina::xpath
