#include "embedded/evtx/record_walk.h"

#include <algorithm>
#include <cstring>

#include "embedded/evtx/byte_reader.h"

namespace corvina::evtx {
namespace {

constexpr std::size_t FreeSpaceField = 48;
constexpr char ChunkSignature[] = "ElfChnk";  // with its closing zero: eight bytes
constexpr char RecordSignature[] = "**\0";    // with its closing zero: four bytes

// Reads the record at `offset` when it is whole: signature there, both sizes equal, all of it before `end`.
bool ReadPlace(std::span<const std::byte> chunk, std::size_t offset, std::size_t end, RecordPlace& place) {
    if (end - offset < SmallestRecord || !HasRecordSignature(chunk, offset)) {
        return false;
    }
    const std::byte* record = chunk.data() + offset;
    const std::uint32_t size = LoadUInt32(record + 4);
    if (size < SmallestRecord || size > end - offset || LoadUInt32(record + size - RecordSizeCopy) != size) {
        return false;
    }
    place = {static_cast<std::uint32_t>(offset), size, LoadUInt64(record + 8), LoadUInt64(record + 16)};
    return true;
}

// The next place after `offset` that holds a whole record, or `end`.
std::size_t NextWholeRecord(std::span<const std::byte> chunk, std::size_t offset, std::size_t end) {
    RecordPlace place;
    while (end - offset >= SmallestRecord) {
        const void* star = std::memchr(chunk.data() + offset, '*', end - offset);
        if (star == nullptr) {
            return end;
        }
        offset = static_cast<std::size_t>(static_cast<const std::byte*>(star) - chunk.data());
        if (ReadPlace(chunk, offset, end, place)) {
            return offset;
        }
        ++offset;
    }
    return end;
}

// A header that lies about its used space must not hide records: then the whole chunk counts as used.
std::size_t UsedEndOf(std::span<const std::byte> chunk) {
    const std::uint32_t end = LoadUInt32(chunk.data() + FreeSpaceField);
    return end < ChunkHeaderSize || end > ChunkSize ? chunk.size() : std::min<std::size_t>(end, chunk.size());
}

}  // namespace

bool HasChunkSignature(std::span<const std::byte> chunk) {
    return chunk.size() >= sizeof ChunkSignature &&
           std::memcmp(chunk.data(), ChunkSignature, sizeof ChunkSignature) == 0;
}

bool HasRecordSignature(std::span<const std::byte> chunk, std::size_t offset) {
    return chunk.size() - offset >= sizeof RecordSignature &&
           std::memcmp(chunk.data() + offset, RecordSignature, sizeof RecordSignature) == 0;
}

bool HoldsOnlyZeros(std::span<const std::byte> bytes) {
    // The bytes are all the same when each equals its neighbour, which is compared in large steps.
    return bytes.empty() ||
           (bytes[0] == std::byte{0} && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0);
}

void WalkRecords(std::span<const std::byte> chunk, RecordWalk& walk) {
    walk.HasHeader = false;
    walk.UsedEnd = ChunkHeaderSize;
    walk.Damaged = 0;
    walk.Records.clear();
    if (chunk.size() < ChunkHeaderSize) {
        return;
    }
    chunk = chunk.first(std::min(chunk.size(), ChunkSize));
    walk.HasHeader = HasChunkSignature(chunk);
    walk.UsedEnd = walk.HasHeader ? UsedEndOf(chunk) : chunk.size();
    RecordPlace place;
    std::size_t offset = ChunkHeaderSize;
    while (offset < walk.UsedEnd) {
        if (ReadPlace(chunk, offset, walk.UsedEnd, place)) {
            walk.Records.push_back(place);
            offset += place.Size;
            continue;
        }
        const std::size_t next = NextWholeRecord(chunk, offset, walk.UsedEnd);
        if (!HoldsOnlyZeros(chunk.subspan(offset, next - offset))) {
            ++walk.Damaged;
        }
        offset = next;
    }
}

}  // namespace corvina::evtx
