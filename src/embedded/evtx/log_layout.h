// Where the chunks of a log stand. Finding that out means looking at the header of each of them, so a layout can be
// kept by those who open the same log again and again, as long as nothing has been added to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "embedded/evtx/log_file.h"
#include "platform/random_access_file.h"

namespace corvina::evtx {

struct LogLayout {
    std::vector<ChunkPlace> Chunks;               // those that hold records, in the order of their first record ids
    std::vector<std::uint64_t> LargestRecordIds;  // for each chunk: in it and in all before it
    std::uint64_t Records = 0;
    std::uint64_t ForeignBytes = 0;
    std::uint64_t ForeignChunks = 0;
    bool IsWhole = true;  // false when a part of the file could not be read

    std::uint64_t FirstChunkOffset = 0;
    std::uint32_t Ends = 0;  // a checksum over the places that change when events are added

    // The chunks, from the first of the pair up to the second, outside of which no record has an identifier from
    // `first` to `last`. Found without a look at all chunks.
    std::pair<std::size_t, std::size_t> ChunksWithRecordIds(std::uint64_t first, std::uint64_t last) const;
};

// Walks the whole file from `firstChunk` on. Chunks whose header is sound are believed about their records when
// `believesHeaders`; the records of all others are walked.
std::shared_ptr<const LogLayout> FindLayout(const RandomAccessFile& file, std::uint64_t firstChunk,
                                            bool believesHeaders);

// Whether the file still has that layout, by a look at the few places at which a log grows: its header, the header of
// its newest chunk and the place behind that one. To be asked of a file whose size and time of writing are the same;
// while a log is written to, these may lag behind its content.
bool StillHasLayout(const RandomAccessFile& file, const LogLayout& layout);

}  // namespace corvina::evtx
