// Little-endian numbers out of the bytes of a file. The caller has made sure that the bytes are there.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace corvina {

template <typename Number>
Number LoadLittleEndian(const std::byte* bytes) {
    Number number = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&number, bytes, sizeof number);
    } else {
        for (std::size_t index = sizeof number; index > 0; --index) {
            number = static_cast<Number>(number << 8 | std::to_integer<Number>(bytes[index - 1]));
        }
    }
    return number;
}

inline std::uint8_t LoadUInt8(const std::byte* bytes) {
    return std::to_integer<std::uint8_t>(*bytes);
}
inline std::uint16_t LoadUInt16(const std::byte* bytes) {
    return LoadLittleEndian<std::uint16_t>(bytes);
}
inline std::uint32_t LoadUInt32(const std::byte* bytes) {
    return LoadLittleEndian<std::uint32_t>(bytes);
}
inline std::uint64_t LoadUInt64(const std::byte* bytes) {
    return LoadLittleEndian<std::uint64_t>(bytes);
}

}  // namespace corvina
