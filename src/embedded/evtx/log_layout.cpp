#include "embedded/evtx/log_layout.h"

#include <algorithm>
#include <array>
#include <span>
#include <zlib.h>

#include "embedded/evtx/chunk_header.h"
#include "embedded/evtx/record_walk.h"

namespace corvina::evtx {
namespace {

// Small enough to stay in the fastest memory.
constexpr std::size_t PieceSize = 8192;

std::uint32_t AddToChecksum(const RandomAccessFile& file, std::uint64_t offset, std::uint32_t checksum) {
    std::array<std::byte, ChunkHeaderSize> bytes;
    const std::size_t size = file.ReadAt(offset, bytes);
    return static_cast<std::uint32_t>(
        crc32(checksum, reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(size)));
}

// The newest chunk is filled, then the one behind it; at the end of its size a log goes on at its first chunk.
std::uint32_t ChecksumOfEnds(const RandomAccessFile& file, const LogLayout& layout) {
    std::uint64_t newest = layout.FirstChunkOffset;
    std::uint64_t behind = newest;
    if (!layout.Chunks.empty()) {
        newest = layout.Chunks.back().FileOffset;
        behind = newest + ChunkSize < file.Size() ? newest + ChunkSize : layout.FirstChunkOffset;
    }
    return AddToChecksum(file, behind, AddToChecksum(file, newest, AddToChecksum(file, 0, 0)));
}

class LayoutFinder {
  public:
    LayoutFinder(const RandomAccessFile& file, LogLayout& layout) : file_(file), layout_(layout) {}

    void Find(bool believesHeaders) {
        for (std::uint64_t offset = layout_.FirstChunkOffset; offset < file_.Size(); offset += ChunkSize) {
            ChunkPlace place;
            if (believesHeaders && ReadChunkHeader(file_, offset, place)) {
                Add(place);
            } else {
                WalkPlace(offset);
            }
        }
        Sort();
    }

  private:
    void Add(const ChunkPlace& place) {
        layout_.Chunks.push_back(place);
        layout_.Records += place.RecordCount;
    }

    // Most places without a chunk are room that a log has not used yet.
    void WalkPlace(std::uint64_t offset) {
        if (IsUnused(offset)) {
            return;
        }
        buffer_.resize(ChunkSize);
        const std::size_t size = file_.ReadAt(offset, buffer_);
        layout_.IsWhole &= size == std::min<std::uint64_t>(ChunkSize, file_.Size() - offset);
        const auto bytes = std::span<const std::byte>(buffer_).first(size);
        WalkRecords(bytes, walk_);
        if (!walk_.Records.empty()) {
            const auto [first, last] = std::minmax_element(
                walk_.Records.begin(), walk_.Records.end(),
                [](const RecordPlace& left, const RecordPlace& right) { return left.RecordId < right.RecordId; });
            Add({offset, first->RecordId, last->RecordId, static_cast<std::uint32_t>(walk_.Records.size())});
        } else if (!walk_.HasHeader && !HoldsOnlyZeros(bytes)) {
            if (size == ChunkSize) {
                ++layout_.ForeignChunks;
            } else {
                layout_.ForeignBytes += size;
            }
        }
    }

    // Whether a whole place holds nothing but zeros.
    bool IsUnused(std::uint64_t offset) const {
        std::array<std::byte, PieceSize> piece;
        for (std::size_t read = 0; read < ChunkSize; read += PieceSize) {
            if (file_.ReadAt(offset + read, piece) != PieceSize || !HoldsOnlyZeros(piece)) {
                return false;
            }
        }
        return true;
    }

    void Sort() {
        std::stable_sort(
            layout_.Chunks.begin(), layout_.Chunks.end(),
            [](const ChunkPlace& left, const ChunkPlace& right) { return left.FirstRecordId < right.FirstRecordId; });
        layout_.LargestRecordIds.reserve(layout_.Chunks.size());
        std::uint64_t largest = 0;
        for (const ChunkPlace& chunk : layout_.Chunks) {
            largest = std::max(largest, chunk.LastRecordId);
            layout_.LargestRecordIds.push_back(largest);
        }
    }

    const RandomAccessFile& file_;
    LogLayout& layout_;
    std::vector<std::byte> buffer_;
    RecordWalk walk_;
};

}  // namespace

std::pair<std::size_t, std::size_t> LogLayout::ChunksWithRecordIds(std::uint64_t first, std::uint64_t last) const {
    const auto begin = std::lower_bound(LargestRecordIds.begin(), LargestRecordIds.end(), first);
    const auto end = std::upper_bound(
        Chunks.begin(), Chunks.end(), last,
        [](std::uint64_t recordId, const ChunkPlace& chunk) { return recordId < chunk.FirstRecordId; });
    const auto beginIndex = static_cast<std::size_t>(begin - LargestRecordIds.begin());
    return {beginIndex, std::max(beginIndex, static_cast<std::size_t>(end - Chunks.begin()))};
}

std::shared_ptr<const LogLayout> FindLayout(const RandomAccessFile& file, std::uint64_t firstChunk,
                                            bool believesHeaders) {
    const auto layout = std::make_shared<LogLayout>();
    layout->FirstChunkOffset = firstChunk;
    LayoutFinder(file, *layout).Find(believesHeaders);
    layout->Ends = ChecksumOfEnds(file, *layout);
    return layout;
}

bool StillHasLayout(const RandomAccessFile& file, const LogLayout& layout) {
    return layout.IsWhole && ChecksumOfEnds(file, layout) == layout.Ends;
}

}  // namespace corvina::evtx
