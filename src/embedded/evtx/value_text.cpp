#include "embedded/evtx/value_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/scalar_writer.h"

namespace corvina::evtx {
namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t GuidSize = 16;
constexpr std::size_t SystemTimeSize = 16;
constexpr auto BinaryPairs = DigitPairs<256>("0123456789ABCDEF");

enum class IntegerForm : std::uint8_t { None, Unsigned, Signed, Boolean, Hexadecimal, Time };

// What an integer type stores and how it is written; no form for all other types.
struct IntegerType {
    IntegerForm Form = IntegerForm::None;
    std::uint8_t Size = 0;
};

constexpr auto IntegerTypes = [] {
    std::array<IntegerType, 256> types{};
    const auto set = [&types](ValueType type, IntegerForm form, std::uint8_t size) {
        types[static_cast<std::size_t>(type)] = {form, size};
    };
    set(ValueType::Int8, IntegerForm::Signed, 1);
    set(ValueType::UInt8, IntegerForm::Unsigned, 1);
    set(ValueType::Int16, IntegerForm::Signed, 2);
    set(ValueType::UInt16, IntegerForm::Unsigned, 2);
    set(ValueType::Int32, IntegerForm::Signed, 4);
    set(ValueType::UInt32, IntegerForm::Unsigned, 4);
    set(ValueType::Int64, IntegerForm::Signed, 8);
    set(ValueType::UInt64, IntegerForm::Unsigned, 8);
    set(ValueType::Boolean, IntegerForm::Boolean, 4);
    set(ValueType::Size, IntegerForm::Hexadecimal, 8);
    set(ValueType::FileTime, IntegerForm::Time, 8);
    set(ValueType::HexInt32, IntegerForm::Hexadecimal, 4);
    set(ValueType::HexInt64, IntegerForm::Hexadecimal, 8);
    return types;
}();

constexpr IntegerType IntegerTypeOf(ValueType type) {
    return IntegerTypes[static_cast<std::size_t>(type)];
}

// The bits of a value that is not empty. Where a writer stored fewer bytes than the type has, those are the low ones.
inline std::uint64_t IntegerOf(Bytes chunk, const Value& value, IntegerType type) {
    const std::size_t stored = std::min<std::size_t>(type.Size, value.Size);
    std::uint64_t number = 0;
    if (chunk.size() - value.Offset >= sizeof number) {
        number = LoadUInt64(&chunk[value.Offset]);
    } else {
        for (std::size_t index = 0; index < stored; ++index) {
            number |= std::uint64_t{LoadUInt8(&chunk[value.Offset + index])} << (8 * index);
        }
    }
    // What follows the value is shifted out; a sign is drawn back in.
    const auto unused = static_cast<unsigned>(64 - 8 * stored);
    number <<= unused;
    if (type.Form == IntegerForm::Signed && stored == type.Size) {
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(number) >> unused);
    }
    return number >> unused;
}

template <typename Char>
void PutInteger(IntegerForm form, std::uint64_t number, ScalarWriter<Char>& out) {
    switch (form) {
        case IntegerForm::Boolean:
            out.Put(number != 0 ? "true" : "false");
            break;
        case IntegerForm::Time:
            out.FileTime(number);
            break;
        case IntegerForm::Hexadecimal:
            out.Put("0x").Hexadecimal(number);
            break;
        default:
            if (form == IntegerForm::Signed && static_cast<std::int64_t>(number) < 0) {
                out.Put('-');
                number = 0 - number;
            }
            out.Decimal(number);
            break;
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

// Writes a structured value that has a short text; false when its bytes are not a value of its type.
template <typename Char>
bool PutScalar(ValueType type, Bytes bytes, ScalarWriter<Char>& out) {
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
    Char* out = text.Room(2 * bytes.size());
    for (const std::byte byte : bytes) {
        out = std::copy_n(&BinaryPairs[2 * std::to_integer<std::size_t>(byte)], 2, out);
    }
    text.SetEnd(out);
}

// How a value of one type becomes text. There is a function for each type, since the types change from value to value:
// one jump then leads to code that is made for the type.
template <typename Char>
using Appender = void (*)(Bytes chunk, const Value& value, Escaping escaping, TextBuffer<Char>& text);

template <typename Char>
void AppendNothing(Bytes, const Value&, Escaping, TextBuffer<Char>&) {}

template <typename Char>
void AppendText(Bytes chunk, const Value& value, Escaping escaping, TextBuffer<Char>& text) {
    AppendUtf16Text(TextBytes(chunk, value), escaping, text);
}

template <typename Char>
void AppendEightBitText(Bytes chunk, const Value& value, Escaping escaping, TextBuffer<Char>& text) {
    AppendAnsiText(TextBytes(chunk, value), escaping, text);
}

template <typename Char, IntegerForm Form, std::uint8_t Size>
void AppendInteger(Bytes chunk, const Value& value, Escaping, TextBuffer<Char>& text) {
    if (value.Size == 0) {
        return;
    }
    ScalarWriter<Char> out(text.Room(LongestScalar));
    PutInteger(Form, IntegerOf(chunk, value, {Form, Size}), out);
    text.SetEnd(out.End());
}

template <typename Char>
void AppendOther(Bytes chunk, const Value& value, Escaping, TextBuffer<Char>& text) {
    if (value.Size == 0) {
        return;
    }
    ScalarWriter<Char> out(text.Room(LongestScalar));
    const Bytes bytes = chunk.subspan(value.Offset, value.Size);
    if (PutScalar(value.Type, bytes, out)) {
        text.SetEnd(out.End());
    } else {
        AppendBytes(bytes, text);
    }
}

template <typename Char>
void AppendArray(Bytes chunk, const Value& value, Escaping escaping, TextBuffer<Char>& text);

constexpr std::size_t ArrayIndex = 256;

// The functions for the values of all type bytes, behind them the one for arrays.
template <typename Char, std::size_t... Types>
constexpr auto MakeAppenders(std::index_sequence<Types...>) {
    std::array<Appender<Char>, ArrayIndex + 1> appenders{
        (IntegerTypes[Types].Form == IntegerForm::None
             ? &AppendOther<Char>
             : &AppendInteger<Char, IntegerTypes[Types].Form, IntegerTypes[Types].Size>)...};
    appenders[ArrayIndex] = &AppendArray<Char>;
    appenders[static_cast<std::size_t>(ValueType::Null)] = &AppendNothing<Char>;
    appenders[static_cast<std::size_t>(ValueType::BinaryXml)] = &AppendNothing<Char>;
    appenders[static_cast<std::size_t>(ValueType::Text)] = &AppendText<Char>;
    appenders[static_cast<std::size_t>(ValueType::AnsiText)] = &AppendEightBitText<Char>;
    return appenders;
}

template <typename Char>
constexpr auto Appenders = MakeAppenders<Char>(std::make_index_sequence<ArrayIndex>());

template <typename Char>
void AppendArray(Bytes chunk, const Value& value, Escaping escaping, TextBuffer<Char>& text) {
    ArrayItems items(chunk, value);
    Value item;
    for (bool first = true; items.Next(item); first = false) {
        if (!first) {
            text.Append(static_cast<Char>(' '));
        }
        AppendValueText(chunk, item, escaping, text);
    }
}

}  // namespace

template <typename Char>
void AppendValueText(std::span<const std::byte> chunk, const Value& value, Escaping escaping, TextBuffer<Char>& text) {
    const std::size_t index = value.IsArray ? ArrayIndex : static_cast<std::size_t>(value.Type);
    Appenders<Char>[index](chunk, value, escaping, text);
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
    const IntegerType type = IntegerTypeOf(value.Type);
    if (value.IsArray || value.Size == 0 || type.Form == IntegerForm::None) {
        return false;
    }
    bits = IntegerOf(chunk, value, type);
    return true;
}

template void AppendValueText(std::span<const std::byte>, const Value&, Escaping, TextBuffer<char>&);
template void AppendValueText(std::span<const std::byte>, const Value&, Escaping, TextBuffer<wchar_t>&);

}  // namespace corvina::evtx
