#include "embedded/xpath/filter.h"

#include <array>
#include <limits>

namespace corvina::xpath {
namespace {

// Reads a text piece by piece; blanks between the pieces do not count.
class Scanner {
  public:
    explicit Scanner(std::wstring_view text) : text_(text) {}

    bool Take(std::wstring_view piece) {
        SkipBlanks();
        if (text_.substr(0, piece.size()) != piece) {
            return false;
        }
        text_.remove_prefix(piece.size());
        return true;
    }

    // The digits that follow; empty when there are none.
    std::wstring_view TakeDigits() {
        SkipBlanks();
        const std::size_t end = text_.find_first_not_of(L"0123456789");
        const std::wstring_view digits = text_.substr(0, end);
        text_.remove_prefix(digits.size());
        return digits;
    }

    bool AtEnd() {
        SkipBlanks();
        return text_.empty();
    }

  private:
    void SkipBlanks() {
        const std::size_t first = text_.find_first_not_of(L" \t\r\n");
        text_.remove_prefix(first == std::wstring_view::npos ? text_.size() : first);
    }

    std::wstring_view text_;
};

// None when the number does not fit into 64 bits.
std::optional<std::uint64_t> NumberOf(std::wstring_view digits) {
    constexpr std::uint64_t Maximum = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t number = 0;
    for (const wchar_t character : digits) {
        const auto digit = static_cast<std::uint64_t>(character - L'0');
        if (number > (Maximum - digit) / 10) {
            return std::nullopt;
        }
        number = number * 10 + digit;
    }
    return number;
}

}  // namespace

std::unique_ptr<const Filter> Filter::Parse(std::wstring_view text, std::uint64_t /*now*/) {
    Scanner scanner(text);
    if (scanner.AtEnd() || (scanner.Take(L"*") && scanner.AtEnd())) {
        return std::unique_ptr<const Filter>(new Filter(Kind::Everything, 0));
    }
    scanner = Scanner(text);
    constexpr std::array<std::wstring_view, 6> Look{L"Event", L"/", L"System", L"[", L"EventRecordID", L"="};
    for (const std::wstring_view piece : Look) {
        if (!scanner.Take(piece)) {
            return nullptr;
        }
    }
    const bool negative = scanner.Take(L"-");
    const std::wstring_view digits = scanner.TakeDigits();
    if (digits.empty() || !scanner.Take(L"]") || !scanner.AtEnd()) {
        return nullptr;
    }
    const std::optional<std::uint64_t> number = NumberOf(digits);
    const bool possible = number.has_value() && (!negative || *number == 0);
    return std::unique_ptr<const Filter>(new Filter(possible ? Kind::RecordId : Kind::Nothing, number.value_or(0)));
}

bool Filter::Matches(EventValues& event) const {
    if (kind_ != Kind::RecordId) {
        return kind_ == Kind::Everything;
    }
    const evtx::SystemValues* const system = event.System();
    return system != nullptr && system->EventRecordId == recordId_;
}

}  // namespace corvina::xpath
