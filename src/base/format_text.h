// The one formatter for the platform's printf-style wide formats ("%s", "%lu", "%I64u", "0x%I64x", "%02d", "%hu", "%i",
// "%u", "%%"). Formats come from language tables, so arguments are checked against the format instead of trusted: a
// conversion without a fitting argument gives no text for itself and never reads anything else.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>

namespace corvina {

class FormatArgument {
  public:
    FormatArgument(std::wstring_view text) : text_(text), isText_(true) {}
    FormatArgument(const std::wstring& text) : FormatArgument(std::wstring_view(text)) {}
    FormatArgument(const wchar_t* text) : FormatArgument(std::wstring_view(text)) {}
    template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
    FormatArgument(Integer number) : number_(static_cast<std::uint64_t>(number)) {}

    bool IsText() const { return isText_; }
    std::wstring_view Text() const { return text_; }
    // The number's bits, sign-extended to 64.
    std::uint64_t Number() const { return number_; }

  private:
    std::wstring_view text_;
    std::uint64_t number_ = 0;
    bool isText_ = false;
};

// Formats as the platform's wide printf does: "%d %i" signed 32 bits, "%u %lu %x %X" unsigned 32 bits, "%hu" 16 bits,
// "%I64u %I64d %I64x" 64 bits, "%s" text, "%%" a percent sign, with flags "0" and "-", width and precision (of texts
// the most characters, of numbers the fewest digits), both bounded to 1,000. An argument of the wrong kind is passed
// over.
std::wstring FormatText(std::wstring_view format, std::initializer_list<FormatArgument> arguments);

}  // namespace corvina
