// One event in the memory of a chunk, for fuzz targets.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "embedded/evtx/log_file.h"

namespace corvina::fuzz {

inline void Put32(std::vector<std::byte>& bytes, std::size_t offset, std::uint32_t value) {
    for (std::size_t index = 0; index < 4; ++index) {
        bytes[offset + index] = static_cast<std::byte>(value >> (8 * index) & 0xFF);
    }
}

// A chunk whose only record has this content, cut to what fits.
inline std::vector<std::byte> ChunkAround(std::span<const std::byte> content) {
    constexpr std::size_t FirstRecord = 512;
    constexpr std::size_t RecordFrame = 28;  // everything of a record but its content
    std::vector<std::byte> chunk(evtx::ChunkSize);
    const std::size_t length = std::min(content.size(), evtx::ChunkSize - FirstRecord - RecordFrame);
    const auto size = static_cast<std::uint32_t>(length + RecordFrame);
    std::memcpy(chunk.data(), "ElfChnk", 8);
    Put32(chunk, 48, static_cast<std::uint32_t>(FirstRecord) + size);
    std::memcpy(chunk.data() + FirstRecord, "**\0", 4);
    Put32(chunk, FirstRecord + 4, size);
    std::copy_n(content.begin(), length, chunk.begin() + FirstRecord + 24);
    Put32(chunk, FirstRecord + size - 4, size);
    return chunk;
}

}  // namespace corvina::fuzz
