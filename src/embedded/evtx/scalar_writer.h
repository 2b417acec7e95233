// Writes numbers, times and identifiers as characters below 128, straight into the text that they become part of.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>

#include "base/calendar.h"
#include "embedded/evtx/byte_reader.h"

namespace corvina::evtx {

// The two digits of every number below Count, one number after the other.
template <std::size_t Count>
constexpr std::array<char, 2 * Count> DigitPairs(std::string_view digits) {
    std::array<char, 2 * Count> pairs{};
    for (std::size_t number = 0; number < Count; ++number) {
        pairs[2 * number] = digits[number / digits.size()];
        pairs[2 * number + 1] = digits[number % digits.size()];
    }
    return pairs;
}

inline constexpr auto DecimalPairs = DigitPairs<100>("0123456789");
inline constexpr auto HexadecimalPairs = DigitPairs<256>("0123456789abcdef");

// No value is longer than this: a security identifier with 15 sub-authorities has 184 characters.
inline constexpr std::size_t LongestScalar = 256;

// Char is char or wchar_t. There must be room for LongestScalar characters.
template <typename Char>
class ScalarWriter {
  public:
    explicit ScalarWriter(Char* out) : out_(out) {}

    Char* End() const { return out_; }

    ScalarWriter& Put(char character) {
        *out_++ = static_cast<Char>(character);
        return *this;
    }

    ScalarWriter& Put(std::string_view text) {
        for (const char character : text) {
            Put(character);
        }
        return *this;
    }

    ScalarWriter& Decimal(std::uint64_t number) {
        if (number < 10) {
            return Put(static_cast<char>('0' + number));
        }
        std::array<char, 20> digits;
        char* begin = digits.data() + digits.size();
        const auto addPair = [&begin](std::size_t pair) {
            begin -= 2;
            std::copy_n(&DecimalPairs[2 * pair], 2, begin);
        };
        while (number > UINT32_MAX) {
            addPair(number % 100);
            number /= 100;
        }
        // Most numbers are small, and divisions of 32 bits faster.
        auto small = static_cast<std::uint32_t>(number);
        while (small >= 10) {
            addPair(small % 100);
            small /= 100;
        }
        if (small > 0) {
            *--begin = static_cast<char>('0' + small);
        }
        return Put({begin, digits.data() + digits.size()});
    }

    // With zeros in front up to `width` digits; more digits where the number has more.
    ScalarWriter& Padded(std::uint32_t number, std::size_t width) {
        std::uint32_t rest = number;
        std::size_t place = width;
        for (; place >= 2; place -= 2) {
            std::copy_n(&DecimalPairs[2 * std::size_t{rest % 100}], 2, out_ + place - 2);
            rest /= 100;
        }
        if (place == 1) {
            out_[0] = static_cast<Char>('0' + rest % 10);
            rest /= 10;
        }
        if (rest != 0) {
            return Decimal(number);
        }
        out_ += width;
        return *this;
    }

    ScalarWriter& Hexadecimal(std::uint64_t number) {
        const std::size_t count = number == 0 ? 1 : (static_cast<std::size_t>(std::bit_width(number)) + 3) / 4;
        for (std::size_t place = count; place > 0; number >>= 4) {
            out_[--place] = static_cast<Char>("0123456789abcdef"[number & 0xF]);
        }
        out_ += count;
        return *this;
    }

    // "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}" from 16 bytes.
    ScalarWriter& Guid(std::span<const std::byte> guid) {
        // The place of the two digits of each byte.
        constexpr std::uint8_t Places[] = {7, 5, 3, 1, 12, 10, 17, 15, 20, 22, 25, 27, 29, 31, 33, 35};
        constexpr std::string_view Frame = "{        -    -    -    -            }";
        std::copy(Frame.begin(), Frame.end(), out_);
        for (std::size_t index = 0; index < std::size(Places); ++index) {
            std::copy_n(&HexadecimalPairs[2 * std::size_t{LoadUInt8(&guid[index])}], 2, out_ + Places[index]);
        }
        out_ += Frame.size();
        return *this;
    }

    // "S-1-5-18" from a valid identifier. Authorities of 2^32 and above are written as "0x" and 12 digits.
    ScalarWriter& Sid(std::span<const std::byte> sid) {
        std::uint64_t authority = 0;
        for (std::size_t index = 2; index < 8; ++index) {
            authority = authority << 8 | LoadUInt8(&sid[index]);
        }
        Put("S-1-");
        if (authority <= UINT32_MAX) {
            Decimal(authority);
        } else {
            Put("0x");
            for (unsigned digit = 12; digit > 0; --digit) {
                Put("0123456789ABCDEF"[authority >> (4 * (digit - 1)) & 0xF]);
            }
        }
        const std::size_t count = LoadUInt8(&sid[1]);
        for (std::size_t index = 0; index < count; ++index) {
            Put('-').Decimal(LoadUInt32(&sid[8 + 4 * index]));
        }
        return *this;
    }

    // "2024-03-05T13:07:09.1234567Z"
    ScalarWriter& FileTime(std::uint64_t fileTime) {
        const CalendarTime time = CalendarFromFileTime(fileTime);
        Padded(static_cast<std::uint32_t>(time.Year), 4).Put('-').Padded(time.Month, 2).Put('-').Padded(time.Day, 2);
        Put('T').Padded(time.Hour, 2).Put(':').Padded(time.Minute, 2).Put(':').Padded(time.Second, 2);
        return Put('.').Padded(time.Ticks, 7).Put('Z');
    }

    // "2024-03-05T13:07:09.123Z" from 16 bytes: year, month, day of the week, day, hour, minute, second, milliseconds.
    ScalarWriter& SystemTime(std::span<const std::byte> bytes) {
        const auto field = [bytes](std::size_t index) { return std::uint32_t{LoadUInt16(&bytes[2 * index])}; };
        Padded(field(0), 4).Put('-').Padded(field(1), 2).Put('-').Padded(field(3), 2);
        Put('T').Padded(field(4), 2).Put(':').Padded(field(5), 2).Put(':').Padded(field(6), 2);
        return Put('.').Padded(field(7), 3).Put('Z');
    }

  private:
    Char* out_;
};

}  // namespace corvina::evtx
