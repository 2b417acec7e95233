// Finding the records of a chunk by their signatures and sizes, without looking at what is in them. A damaged record
// does not end the walk: it goes on at the next place that looks like a whole record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "embedded/evtx/log_file.h"

namespace corvina::evtx {

inline constexpr std::size_t ChunkHeaderSize = 512;  // fixed part and the two tables
inline constexpr std::size_t RecordHeaderSize = 24;  // signature, size, identifier, time
inline constexpr std::size_t RecordSizeCopy = 4;     // the size again, at the end
inline constexpr std::size_t SmallestRecord = RecordHeaderSize + RecordSizeCopy;

struct RecordWalk {
    bool HasHeader = false;     // the chunk signature is there
    std::size_t UsedEnd = 0;    // where the chunk's used space ends
    std::uint32_t Damaged = 0;  // places where a record should have been
    std::vector<RecordPlace> Records;
};

bool HasChunkSignature(std::span<const std::byte> chunk);

// Whether the four bytes that start a record stand at `offset`, which is not beyond the end.
bool HasRecordSignature(std::span<const std::byte> chunk, std::size_t offset);

bool HoldsOnlyZeros(std::span<const std::byte> bytes);

// Walks one chunk; `chunk` may be shorter than a whole one when the file was cut off. Places without a chunk signature
// are walked as well: records outlive a chunk's header that was overwritten.
void WalkRecords(std::span<const std::byte> chunk, RecordWalk& walk);

}  // namespace corvina::evtx
