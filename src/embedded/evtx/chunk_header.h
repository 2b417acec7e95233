// What the header of a chunk says about its records, for those who do not want to read them all: a log of a gigabyte is
// opened by looking at a hundredth of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "embedded/evtx/log_file.h"
#include "platform/random_access_file.h"

namespace corvina::evtx {

// The checksum of a chunk's header, of its fixed fields and its two tables, as it should stand in the header itself.
// Takes at least the ChunkHeaderSize first bytes.
std::uint32_t ChunkHeaderChecksum(std::span<const std::byte> header);
std::uint32_t StoredHeaderChecksum(std::span<const std::byte> header);

// Fills `place` from the header of the chunk at `offset`. False when the header is not to be believed, so that the
// records have to be walked: its checksum is wrong, or its first and last record do not stand where it says, as in a
// chunk that was being written when the computer stopped.
bool ReadChunkHeader(const RandomAccessFile& file, std::uint64_t offset, ChunkPlace& place);

}  // namespace corvina::evtx
