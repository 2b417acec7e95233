#include "base/format_text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace corvina {

namespace {

constexpr std::size_t MaximumWidth = 1'000;

struct Conversion {
    bool LeftAligned = false;
    bool ZeroPadded = false;
    std::size_t Width = 0;
    std::optional<std::size_t> Precision;
    int Bits = 32;
    wchar_t Kind = 0;  // 'd', 'u', 'x', 'X', 's' or '%'; 0 for anything that the formatter does not know
};

// Reads the format from left to right. At the end it keeps giving the zero character, which fits nothing.
class FormatReader {
  public:
    explicit FormatReader(std::wstring_view format) : format_(format) {}

    bool AtEnd() const { return position_ >= format_.size(); }

    std::wstring_view TakeUntilPercent() {
        const std::size_t percent = std::min(format_.find(L'%', position_), format_.size());
        const std::wstring_view text = format_.substr(position_, percent - position_);
        position_ = percent;
        return text;
    }

    // Reads one conversion, its percent sign included.
    Conversion TakeConversion() {
        Conversion conversion;
        ++position_;
        TakeFlags(conversion);
        conversion.Width = TakeNumber();
        if (Take(L'.')) {
            conversion.Precision = TakeNumber();
        }
        conversion.Bits = TakeLength();
        conversion.Kind = TakeKind();
        return conversion;
    }

  private:
    bool Take(wchar_t expected) {
        if (AtEnd() || format_[position_] != expected) {
            return false;
        }
        ++position_;
        return true;
    }

    bool Take(std::wstring_view expected) {
        if (format_.substr(position_, expected.size()) != expected) {
            return false;
        }
        position_ += expected.size();
        return true;
    }

    void TakeFlags(Conversion& conversion) {
        for (;;) {
            if (Take(L'-')) {
                conversion.LeftAligned = true;
            } else if (Take(L'0')) {
                conversion.ZeroPadded = true;
            } else {
                return;
            }
        }
    }

    std::size_t TakeNumber() {
        std::size_t number = 0;
        while (!AtEnd() && format_[position_] >= L'0' && format_[position_] <= L'9') {
            number = std::min(number * 10 + static_cast<std::size_t>(format_[position_] - L'0'), MaximumWidth);
            ++position_;
        }
        return number;
    }

    int TakeLength() {
        if (AtEnd() || std::wstring_view(L"Ilhwz").find(format_[position_]) == std::wstring_view::npos) {
            return 32;
        }
        if (Take(L"I64") || Take(L"ll")) {
            return 64;
        }
        if (Take(L"hh")) {
            return 8;
        }
        if (Take(L'h')) {
            return 16;
        }
        if (Take(L"I32") || Take(L'l') || Take(L'w')) {
            return 32;
        }
        return Take(L'I') || Take(L'z') ? 64 : 32;
    }

    wchar_t TakeKind() {
        if (AtEnd()) {
            return 0;
        }
        const wchar_t kind = format_[position_++];
        switch (kind) {
            case L'd':
            case L'i':
                return L'd';
            case L'u':
            case L'x':
            case L'X':
            case L's':
            case L'%':
                return kind;
            default:
                return 0;
        }
    }

    std::wstring_view format_;
    std::size_t position_ = 0;
};

void AppendText(std::wstring_view text, const Conversion& conversion, std::wstring& result) {
    text = text.substr(0, conversion.Precision.value_or(text.size()));
    const std::size_t padding = conversion.Width > text.size() ? conversion.Width - text.size() : 0;
    result.append(conversion.LeftAligned ? 0 : padding, L' ');
    result += text;
    result.append(conversion.LeftAligned ? padding : 0, L' ');
}

std::uint64_t CutToBits(std::uint64_t number, int bits) {
    return bits >= 64 ? number : number & ((std::uint64_t{1} << bits) - 1);
}

void AppendNumber(std::uint64_t number, const Conversion& conversion, std::wstring& result) {
    std::uint64_t magnitude = CutToBits(number, conversion.Bits);
    const bool negative = conversion.Kind == L'd' && (magnitude >> (conversion.Bits - 1) & 1) != 0;
    if (negative) {
        magnitude = CutToBits(0 - magnitude, conversion.Bits);
    }
    const unsigned base = conversion.Kind == L'x' || conversion.Kind == L'X' ? 16 : 10;
    const wchar_t* const symbols = conversion.Kind == L'X' ? L"0123456789ABCDEF" : L"0123456789abcdef";
    std::array<wchar_t, 20> digits;
    std::size_t first = digits.size();
    // As in the platform, the number 0 with precision 0 has no digits.
    while (magnitude != 0 || (first == digits.size() && conversion.Precision != 0U)) {
        digits[--first] = symbols[magnitude % base];
        magnitude /= base;
    }
    const std::size_t count = digits.size() - first;
    std::size_t wantedDigits = conversion.Precision.value_or(0);
    if (conversion.ZeroPadded && !conversion.LeftAligned && !conversion.Precision) {
        wantedDigits = conversion.Width - (negative && conversion.Width > 0 ? 1 : 0);
    }
    const std::size_t zeros = wantedDigits > count ? wantedDigits - count : 0;
    const std::size_t size = (negative ? 1 : 0) + zeros + count;
    const std::size_t padding = conversion.Width > size ? conversion.Width - size : 0;
    result.append(conversion.LeftAligned ? 0 : padding, L' ');
    result.append(negative ? 1 : 0, L'-');
    result.append(zeros, L'0');
    result.append(digits.data() + first, count);
    result.append(conversion.LeftAligned ? padding : 0, L' ');
}

void AppendArgument(const FormatArgument& argument, const Conversion& conversion, std::wstring& result) {
    if (argument.IsText() != (conversion.Kind == L's')) {
        return;
    }
    if (argument.IsText()) {
        AppendText(argument.Text(), conversion, result);
    } else {
        AppendNumber(argument.Number(), conversion, result);
    }
}

}  // namespace

std::wstring FormatText(std::wstring_view format, std::initializer_list<FormatArgument> arguments) {
    std::wstring result;
    result.reserve(format.size() + 32);
    FormatReader reader(format);
    auto next = arguments.begin();
    for (;;) {
        result += reader.TakeUntilPercent();
        if (reader.AtEnd()) {
            return result;
        }
        const Conversion conversion = reader.TakeConversion();
        if (conversion.Kind == L'%') {
            result += L'%';
        } else if (conversion.Kind != 0 && next != arguments.end()) {
            AppendArgument(*next, conversion, result);
            ++next;
        }
    }
}

}  // namespace corvina
