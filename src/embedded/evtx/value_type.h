// The types of values in binary XML, with their type bytes as published with the format.
#pragma once

#include <cstdint>

namespace corvina::evtx {

enum class ValueType : std::uint8_t {
    Null = 0x00,
    Text = 0x01,      // UTF-16
    AnsiText = 0x02,  // 8-bit, code page of the computer that wrote the log
    Int8 = 0x03,
    UInt8 = 0x04,
    Int16 = 0x05,
    UInt16 = 0x06,
    Int32 = 0x07,
    UInt32 = 0x08,
    Int64 = 0x09,
    UInt64 = 0x0A,
    Float = 0x0B,
    Double = 0x0C,
    Boolean = 0x0D,
    Binary = 0x0E,
    Guid = 0x0F,
    Size = 0x10,
    FileTime = 0x11,
    SystemTime = 0x12,
    Sid = 0x13,
    HexInt32 = 0x14,
    HexInt64 = 0x15,
    BinaryXml = 0x21,
};

// Added to a type byte: an array of such values.
inline constexpr std::uint8_t ArrayFlag = 0x80;

}  // namespace corvina::evtx
