// The typed values of binary XML: where they stand in a chunk, and the items of arrays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/identifiers.h"
#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/value_type.h"

namespace corvina::evtx {

// A value of a template instance: where its bytes stand in the chunk.
struct Value {
    ValueType Type = ValueType::Null;  // of the items when IsArray
    bool IsArray = false;
    std::uint32_t Offset = 0;
    std::uint32_t Size = 0;

    bool IsNull() const { return Type == ValueType::Null; }
    bool IsBinaryXml() const { return Type == ValueType::BinaryXml && !IsArray; }
};

// Hands out the items of an array one after another.
class ArrayItems {
  public:
    // `array` must have IsArray set and lie inside `chunk`.
    ArrayItems(std::span<const std::byte> chunk, const Value& array) : chunk_(chunk), rest_(array) {}

    // The next item as a value of its own; false when there are no more.
    bool Next(Value& item) {
        const std::uint32_t size = ItemSize();
        if (rest_.Size == 0 || size > rest_.Size) {
            return false;
        }
        item = {rest_.Type, false, rest_.Offset, size};
        const std::uint32_t taken = size + TerminatorSize(size);
        rest_.Offset += taken;
        rest_.Size -= taken;
        return true;
    }

  private:
    std::uint32_t ItemSize() const {
        switch (rest_.Type) {
            case ValueType::Text:
                return TextSize(2);
            case ValueType::AnsiText:
                return TextSize(1);
            case ValueType::Int8:
            case ValueType::UInt8:
                return 1;
            case ValueType::Int16:
            case ValueType::UInt16:
                return 2;
            case ValueType::Int32:
            case ValueType::UInt32:
            case ValueType::Float:
            case ValueType::Boolean:
            case ValueType::HexInt32:
                return 4;
            case ValueType::Int64:
            case ValueType::UInt64:
            case ValueType::Double:
            case ValueType::FileTime:
            case ValueType::HexInt64:
                return 8;
            case ValueType::Size:
                return rest_.Size % 8 == 0 ? 8 : 4;
            case ValueType::Guid:
            case ValueType::SystemTime:
                return 16;
            case ValueType::Sid: {
                const auto length = SidLength(chunk_.subspan(rest_.Offset, rest_.Size));
                return length == 0 ? rest_.Size : static_cast<std::uint32_t>(length);
            }
            default:
                return rest_.Size;
        }
    }

    // Bytes up to the terminating zero character, or all that is left.
    std::uint32_t TextSize(std::uint32_t unit) const {
        const std::byte* text = chunk_.data() + rest_.Offset;
        std::uint32_t size = 0;
        while (size + unit <= rest_.Size && (unit == 2 ? LoadUInt16(text + size) : LoadUInt8(text + size)) != 0) {
            size += unit;
        }
        return size + unit <= rest_.Size ? size : rest_.Size;
    }

    std::uint32_t TerminatorSize(std::uint32_t size) const {
        if (size == rest_.Size) {
            return 0;
        }
        return rest_.Type == ValueType::Text ? 2 : rest_.Type == ValueType::AnsiText ? 1 : 0;
    }

    std::span<const std::byte> chunk_;
    Value rest_;
};

}  // namespace corvina::evtx
