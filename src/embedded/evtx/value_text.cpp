#include "embedded/evtx/value_text.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <string_view>

#include "base/calendar.h"
#include "embedded/evtx/byte_reader.h"

namespace corvina::evtx {
namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t LongestScalar = 256;  // a security identifier with 15 sub-authorities has 184 characters
constexpr std::size_t GuidSize = 16;
constexpr std::size_t SystemTimeSize = 16;

// Writes characters below 128 one after another into a place that is known to be large enough.
class AsciiWriter {
  public:
    explicit AsciiWriter(char* begin) : begin_(begin), end_(begin) {}

    std::string_view View() const { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }

    AsciiWriter& Put(char character) {
        *end_++ = character;
        return *this;
    }

    AsciiWriter& Put(std::string_view text) {
        for (const char character : text) {
            *end_++ = character;
        }
        return *this;
    }

    AsciiWriter& Decimal(std::uint64_t number) {
        end_ = std::to_chars(end_, end_ + 20, number).ptr;
        return *this;
    }

    // With zeros in front up to `width` digits.
    AsciiWriter& Padded(std::uint32_t number, std::size_t width) {
        char digits[10];
        std::size_t count = 0;
        do {
            digits[count++] = static_cast<char>('0' + number % 10);
            number /= 10;
        } while (number != 0 || count < width);
        while (count > 0) {
            *end_++ = digits[--count];
        }
        return *this;
    }

    AsciiWriter& Hexadecimal(std::uint64_t number) {
        end_ = std::to_chars(end_, end_ + 16, number, 16).ptr;
        return *this;
    }

    AsciiWriter& HexByte(std::byte byte) {
        constexpr char Digits[] = "0123456789abcdef";
        *end_++ = Digits[std::to_integer<unsigned>(byte) >> 4];
        *end_++ = Digits[std::to_integer<unsigned>(byte) & 0xF];
        return *this;
    }

    template <typename Number>
    AsciiWriter& Float(Number number) {
        if (std::isnan(number)) {
            return Put("NaN");
        }
        if (std::isinf(number)) {
            return Put(number < 0 ? "-INF" : "INF");
        }
        end_ = std::to_chars(end_, end_ + 64, number).ptr;
        return *this;
    }

  private:
    char* begin_;
    char* end_;
};

void PutGuid(Bytes guid, AsciiWriter& out) {
    constexpr std::uint8_t Order[GuidSize] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    out.Put('{');
    for (std::size_t index = 0; index < GuidSize; ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) {
            out.Put('-');
        }
        out.HexByte(guid[Order[index]]);
    }
    out.Put('}');
}

void PutSid(Bytes sid, AsciiWriter& out) {
    std::uint64_t authority = 0;
    for (std::size_t index = 2; index < 8; ++index) {
        authority = authority << 8 | LoadUInt8(&sid[index]);
    }
    out.Put("S-1-");
    if (authority <= UINT32_MAX) {
        out.Decimal(authority);
    } else {
        constexpr char Digits[] = "0123456789ABCDEF";
        out.Put("0x");
        for (int shift = 44; shift >= 0; shift -= 4) {
            out.Put(Digits[authority >> shift & 0xF]);
        }
    }
    const std::size_t count = LoadUInt8(&sid[1]);
    for (std::size_t index = 0; index < count; ++index) {
        out.Put('-').Decimal(LoadUInt32(&sid[8 + 4 * index]));
    }
}

void PutFileTime(std::uint64_t fileTime, AsciiWriter& out) {
    const CalendarTime time = CalendarFromFileTime(fileTime);
    out.Padded(static_cast<std::uint32_t>(time.Year), 4).Put('-').Padded(time.Month, 2).Put('-').Padded(time.Day, 2);
    out.Put('T').Padded(time.Hour, 2).Put(':').Padded(time.Minute, 2).Put(':').Padded(time.Second, 2);
    out.Put('.').Padded(time.Ticks, 7).Put('Z');
}

// Fields in the order of the structure: year, month, day of the week, day, hour, minute, second, milliseconds.
void PutSystemTime(Bytes bytes, AsciiWriter& out) {
    const auto field = [bytes](std::size_t index) { return std::uint32_t{LoadUInt16(&bytes[2 * index])}; };
    out.Padded(field(0), 4).Put('-').Padded(field(1), 2).Put('-').Padded(field(3), 2);
    out.Put('T').Padded(field(4), 2).Put(':').Padded(field(5), 2).Put(':').Padded(field(6), 2);
    out.Put('.').Padded(field(7), 3).Put('Z');
}

// Integers are stored in the size of their type; where a writer stored fewer bytes, those are the low ones.
std::uint64_t LowBytes(Bytes bytes, std::size_t size) {
    if (bytes.size() >= size) {
        switch (size) {
            case 8:
                return LoadUInt64(bytes.data());
            case 4:
                return LoadUInt32(bytes.data());
            case 2:
                return LoadUInt16(bytes.data());
            default:
                return LoadUInt8(bytes.data());
        }
    }
    std::uint64_t number = 0;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        number |= std::uint64_t{LoadUInt8(&bytes[index])} << (8 * index);
    }
    return number;
}

std::uint64_t SignExtended(std::uint64_t number, std::size_t size) {
    const auto unused = static_cast<unsigned>(64 - 8 * size);
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(number << unused) >> unused);
}

// The size of an integer type in bytes, 0 for other types.
std::size_t IntegerSize(ValueType type, std::size_t stored) {
    switch (type) {
        case ValueType::Int8:
        case ValueType::UInt8:
            return 1;
        case ValueType::Int16:
        case ValueType::UInt16:
            return 2;
        case ValueType::Int32:
        case ValueType::UInt32:
        case ValueType::Boolean:
        case ValueType::HexInt32:
            return 4;
        case ValueType::Int64:
        case ValueType::UInt64:
        case ValueType::FileTime:
        case ValueType::HexInt64:
            return 8;
        case ValueType::Size:
            return stored >= 8 ? 8 : 4;
        default:
            return 0;
    }
}

bool IsSigned(ValueType type) {
    return type == ValueType::Int8 || type == ValueType::Int16 || type == ValueType::Int32 || type == ValueType::Int64;
}

std::uint64_t IntegerOf(ValueType type, Bytes bytes) {
    const std::size_t size = IntegerSize(type, bytes.size());
    const std::uint64_t number = LowBytes(bytes, size);
    return IsSigned(type) && bytes.size() >= size ? SignExtended(number, size) : number;
}

void PutInteger(ValueType type, std::uint64_t number, AsciiWriter& out) {
    switch (type) {
        case ValueType::Boolean:
            out.Put(number != 0 ? "true" : "false");
            return;
        case ValueType::FileTime:
            PutFileTime(number, out);
            return;
        case ValueType::Size:
        case ValueType::HexInt32:
        case ValueType::HexInt64:
            out.Put("0x").Hexadecimal(number);
            return;
        default:
            break;
    }
    if (IsSigned(type) && static_cast<std::int64_t>(number) < 0) {
        out.Put('-').Decimal(0 - number);
    } else {
        out.Decimal(number);
    }
}

// Writes a value that has a short text; false when its bytes are not a value of its type.
bool PutScalar(ValueType type, Bytes bytes, AsciiWriter& out) {
    if (IntegerSize(type, bytes.size()) != 0) {
        PutInteger(type, IntegerOf(type, bytes), out);
        return true;
    }
    switch (type) {
        case ValueType::Float:
            if (bytes.size() >= 4) {
                out.Float(std::bit_cast<float>(LoadUInt32(bytes.data())));
            }
            return bytes.size() >= 4;
        case ValueType::Double:
            if (bytes.size() >= 8) {
                out.Float(std::bit_cast<double>(LoadUInt64(bytes.data())));
            }
            return bytes.size() >= 8;
        case ValueType::Guid:
            if (bytes.size() >= GuidSize) {
                PutGuid(bytes, out);
            }
            return bytes.size() >= GuidSize;
        case ValueType::SystemTime:
            if (bytes.size() >= SystemTimeSize) {
                PutSystemTime(bytes, out);
            }
            return bytes.size() >= SystemTimeSize;
        case ValueType::Sid:
            if (SidLength(bytes) != 0) {
                PutSid(bytes, out);
            }
            return SidLength(bytes) != 0;
        default:
            return false;
    }
}

template <typename Char>
void AppendBytes(Bytes bytes, TextBuffer<Char>& text) {
    constexpr char Digits[] = "0123456789ABCDEF";
    Char* out = text.Room(2 * bytes.size());
    for (const std::byte byte : bytes) {
        *out++ = static_cast<Char>(Digits[std::to_integer<unsigned>(byte) >> 4]);
        *out++ = static_cast<Char>(Digits[std::to_integer<unsigned>(byte) & 0xF]);
    }
    text.SetEnd(out);
}

template <typename Char>
void AppendItemText(std::span<const std::byte> chunk, const Value& value, Escaping escaping, TextBuffer<Char>& text) {
    const Bytes bytes = chunk.subspan(value.Offset, value.Size);
    switch (value.Type) {
        case ValueType::Null:
        case ValueType::BinaryXml:
            return;
        case ValueType::Text:
            AppendUtf16Text(TextBytes(chunk, value), escaping, text);
            return;
        case ValueType::AnsiText:
            AppendAnsiText(TextBytes(chunk, value), escaping, text);
            return;
        default:
            break;
    }
    if (bytes.empty()) {
        return;
    }
    char scalar[LongestScalar];
    AsciiWriter out(scalar);
    if (PutScalar(value.Type, bytes, out)) {
        AppendAscii(out.View(), text);
    } else {
        AppendBytes(bytes, text);
    }
}

}  // namespace

template <typename Char>
void AppendValueText(std::span<const std::byte> chunk, const Value& value, Escaping escaping, TextBuffer<Char>& text) {
    if (!value.IsArray) {
        AppendItemText(chunk, value, escaping, text);
        return;
    }
    ArrayItems items(chunk, value);
    Value item;
    for (bool first = true; items.Next(item); first = false) {
        if (!first) {
            text.Append(static_cast<Char>(' '));
        }
        AppendItemText(chunk, item, escaping, text);
    }
}

std::span<const std::byte> TextBytes(std::span<const std::byte> chunk, const Value& value) {
    const std::size_t unit = value.Type == ValueType::Text ? 2 : 1;
    std::size_t size = value.Size - value.Size % unit;
    const std::byte* bytes = chunk.data() + value.Offset;
    while (size >= unit && bytes[size - 1] == std::byte{0} && bytes[size - unit] == std::byte{0}) {
        size -= unit;
    }
    return {bytes, size};
}

bool IntegerBits(std::span<const std::byte> chunk, const Value& value, std::uint64_t& bits) {
    if (value.IsArray || value.Size == 0 || IntegerSize(value.Type, value.Size) == 0) {
        return false;
    }
    bits = IntegerOf(value.Type, chunk.subspan(value.Offset, value.Size));
    return true;
}

template void AppendValueText(std::span<const std::byte>, const Value&, Escaping, TextBuffer<char>&);
template void AppendValueText(std::span<const std::byte>, const Value&, Escaping, TextBuffer<wchar_t>&);

}  // namespace corvina::evtx
