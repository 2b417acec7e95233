#include <algorithm>
#include <array>

#include "base/format_text.h"
#include "base/parse_number.h"
#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

namespace {

// A few characters of a message can name a long value again and again; no message is worth more than this.
constexpr std::size_t LongestResult = std::size_t{16} << 20;
constexpr std::size_t LongestFormat = 16;

constexpr bool IsDigit(wchar_t character) {
    return character >= L'0' && character <= L'9';
}
constexpr bool IsLetter(wchar_t character) {
    return (character >= L'a' && character <= L'z') || (character >= L'A' && character <= L'Z');
}

// A decimal number with an optional sign, or a hexadecimal one with "0x", in 64 bits.
std::optional<std::uint64_t> ParseValue(std::wstring_view text) {
    const bool negative = text.starts_with(L'-');
    text.remove_prefix(negative ? 1 : 0);
    const std::optional<std::uint64_t> number = ParseUnsigned(text);
    return number && negative ? 0 - *number : number;
}

// Whether the formatter can apply a format (without its percent sign): flags, width, precision, length and kind. It
// knows no widths taken from arguments, forced signs or prefixes.
bool FormatterKnows(std::wstring_view format) {
    const auto skip = [&format](std::wstring_view characters) {
        format.remove_prefix(std::min(format.find_first_not_of(characters), format.size()));
    };
    skip(L"-0");
    skip(L"0123456789");
    if (format.starts_with(L'.')) {
        format.remove_prefix(1);
        skip(L"0123456789");
    }
    if (format.empty() || std::wstring_view(L"sdiuxX").find(format.back()) == std::wstring_view::npos) {
        return false;
    }
    format.remove_suffix(1);
    constexpr std::array<std::wstring_view, 9> lengths = {L"", L"h", L"hh", L"l", L"ll", L"w", L"I", L"I32", L"I64"};
    return std::find(lengths.begin(), lengths.end(), format) != lengths.end();
}

// Reads a message from left to right and builds its text.
class MessageExpander {
  public:
    MessageExpander(std::wstring_view message, std::span<const std::wstring> values)
        : message_(message), values_(values) {}

    std::wstring Expand() {
        while (position_ < message_.size() && result_.size() < LongestResult) {
            const std::size_t percent = std::min(message_.find(L'%', position_), message_.size());
            Append(message_.substr(position_, percent - position_));
            position_ = percent;
            if (position_ < message_.size() && !ExpandEscape()) {
                break;
            }
        }
        return std::move(result_);
    }

    bool Missing() const { return missing_; }

  private:
    void Append(std::wstring_view text) { result_ += text.substr(0, LongestResult - result_.size()); }

    // Expands the escape at the position. False when it ends the message.
    bool ExpandEscape() {
        if (position_ + 1 == message_.size()) {
            Append(L"%");
            ++position_;
            return true;
        }
        const wchar_t kind = message_[position_ + 1];
        if (kind == L'0') {
            return false;
        }
        if (IsDigit(kind)) {
            ExpandValue();
            return true;
        }
        position_ += 2;
        switch (kind) {
            case L'n':
                Append(L"\r\n");
                break;
            case L'r':
                Append(L"\r");
                break;
            case L't':
                Append(L"\t");
                break;
            case L'b':
                Append(L" ");
                break;
            default:
                // Among them "%%", "%." and "%!".
                Append(std::wstring_view(&kind, 1));
                break;
        }
        return true;
    }

    void ExpandValue() {
        const std::size_t start = position_;
        ++position_;
        auto number = static_cast<std::size_t>(message_[position_++] - L'0');
        if (position_ < message_.size() && IsDigit(message_[position_])) {
            number = 10 * number + static_cast<std::size_t>(message_[position_++] - L'0');
        }
        const std::wstring_view format = TakeFormat();
        if (number > values_.size()) {
            missing_ = true;
            Append(message_.substr(start, position_ - start));
            return;
        }
        AppendValue(values_[number - 1], format);
    }

    // Takes a "!format!" and returns what stands between its marks; empty when the text goes on with something else,
    // such as an exclamation mark of its own.
    std::wstring_view TakeFormat() {
        if (position_ >= message_.size() || message_[position_] != L'!') {
            return {};
        }
        const std::wstring_view candidate = message_.substr(position_ + 1, LongestFormat + 1);
        const std::size_t end = candidate.find(L'!');
        if (end == std::wstring_view::npos || end == 0 || !IsLetter(candidate[end - 1])) {
            return {};
        }
        const std::wstring_view format = candidate.substr(0, end);
        const bool known = std::all_of(format.begin(), format.end(), [](wchar_t character) {
            return IsDigit(character) || IsLetter(character) ||
                   std::wstring_view(L".-+#*").find(character) != std::wstring_view::npos;
        });
        if (!known) {
            return {};
        }
        position_ += end + 2;
        return format;
    }

    // Values come as texts; a number format is applied to those that are numbers.
    void AppendValue(const std::wstring& value, std::wstring_view format) {
        if (!FormatterKnows(format)) {
            Append(value);
            return;
        }
        const std::wstring conversion = L"%" + std::wstring(format);
        if (format.back() == L's') {
            Append(FormatText(conversion, {value}));
            return;
        }
        const std::optional<std::uint64_t> number = ParseValue(value);
        Append(number ? FormatText(conversion, {*number}) : value);
    }

    std::wstring_view message_;
    std::span<const std::wstring> values_;
    std::size_t position_ = 0;
    std::wstring result_;
    bool missing_ = false;
};

}  // namespace

std::wstring ExpandMessage(std::wstring_view message, std::span<const std::wstring> values, bool& missing) {
    MessageExpander expander(message, values);
    std::wstring text = expander.Expand();
    missing = expander.Missing();
    return text;
}

}  // namespace corvina::publisher
