// Reading little-endian numbers from bytes that may be anything: every read says whether it was inside its bounds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/little_endian.h"

namespace corvina::evtx {

// Whether UTF-16 text is this text of characters below 128.
inline bool EqualsAscii(std::span<const std::byte> utf16, std::string_view ascii) {
    if (utf16.size() != 2 * ascii.size()) {
        return false;
    }
    for (std::size_t index = 0; index < ascii.size(); ++index) {
        if (LoadUInt16(utf16.data() + 2 * index) != static_cast<unsigned char>(ascii[index])) {
            return false;
        }
    }
    return true;
}

// Walks a part of a chunk. Positions count from the chunk's first byte, as the offsets in the format do.
class ByteReader {
  public:
    // Reads `bytes` from `position` up to `end`; both are cut to the bytes that exist.
    ByteReader(std::span<const std::byte> bytes, std::size_t position, std::size_t end)
        : bytes_(bytes), end_(std::min(end, bytes.size())), position_(std::min(position, end_)) {}

    std::span<const std::byte> Bytes() const { return bytes_; }
    std::size_t Position() const { return position_; }
    std::size_t End() const { return end_; }
    std::size_t Remaining() const { return end_ - position_; }

    bool Skip(std::size_t count) {
        if (count > Remaining()) {
            return false;
        }
        position_ += count;
        return true;
    }

    // The next byte without passing it; false at the end.
    bool Peek(std::uint8_t& value) const {
        if (Remaining() < 1) {
            return false;
        }
        value = LoadUInt8(bytes_.data() + position_);
        return true;
    }

    bool Read(std::uint8_t& value) { return Peek(value) && Skip(1); }

    bool Read(std::uint16_t& value) {
        if (Remaining() < 2) {
            return false;
        }
        value = LoadUInt16(bytes_.data() + position_);
        position_ += 2;
        return true;
    }

    bool Read(std::uint32_t& value) {
        if (Remaining() < 4) {
            return false;
        }
        value = LoadUInt32(bytes_.data() + position_);
        position_ += 4;
        return true;
    }

  private:
    std::span<const std::byte> bytes_;
    std::size_t end_;
    std::size_t position_;
};

}  // namespace corvina::evtx
