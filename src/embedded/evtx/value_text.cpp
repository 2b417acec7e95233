#include "embedded/evtx/value_text.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <iterator>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/scalar_writer.h"

namespace corvina::evtx {
namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t GuidSize = 16;
constexpr std::size_t SystemTimeSize = 16;

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

template <typename Char>
void PutInteger(ValueType type, std::uint64_t number, ScalarWriter<Char>& out) {
    switch (type) {
        case ValueType::Boolean:
            out.Put(number != 0 ? "true" : "false");
            return;
        case ValueType::FileTime:
            out.FileTime(number);
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

// The shortest decimal text that reads back as the same number; the names of the others are those of XML's data types.
template <typename Number, typename Char>
void PutFloat(Number number, ScalarWriter<Char>& out) {
    char text[64];
    if (std::isnan(number)) {
        out.Put("NaN");
    } else if (std::isinf(number)) {
        out.Put(number < 0 ? "-INF" : "INF");
    } else {
        const char* end = std::to_chars(std::begin(text), std::end(text), number).ptr;
        out.Put({text, static_cast<std::size_t>(end - text)});
    }
}

// Writes a value that has a short text; false when its bytes are not a value of its type.
template <typename Char>
bool PutScalar(ValueType type, Bytes bytes, ScalarWriter<Char>& out) {
    if (IntegerSize(type, bytes.size()) != 0) {
        PutInteger(type, IntegerOf(type, bytes), out);
        return true;
    }
    if (type == ValueType::Float && bytes.size() >= sizeof(float)) {
        PutFloat(std::bit_cast<float>(LoadUInt32(bytes.data())), out);
    } else if (type == ValueType::Double && bytes.size() >= sizeof(double)) {
        PutFloat(std::bit_cast<double>(LoadUInt64(bytes.data())), out);
    } else if (type == ValueType::Guid && bytes.size() >= GuidSize) {
        out.Guid(bytes);
    } else if (type == ValueType::SystemTime && bytes.size() >= SystemTimeSize) {
        out.SystemTime(bytes);
    } else if (type == ValueType::Sid && SidLength(bytes) != 0) {
        out.Sid(bytes);
    } else {
        return false;
    }
    return true;
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
    ScalarWriter<Char> out(text.Room(LongestScalar));
    if (PutScalar(value.Type, bytes, out)) {
        text.SetEnd(out.End());
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
