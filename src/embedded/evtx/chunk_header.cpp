#include "embedded/evtx/chunk_header.h"

#include <array>
#include <span>
#include <zlib.h>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/record_walk.h"

namespace corvina::evtx {
namespace {

constexpr std::size_t FirstNumberField = 8;
constexpr std::size_t LastNumberField = 16;
constexpr std::size_t FirstIdField = 24;
constexpr std::size_t LastIdField = 32;
constexpr std::size_t LastRecordField = 44;
constexpr std::size_t FreeSpaceField = 48;
constexpr std::size_t FixedFieldsSize = 120;
constexpr std::size_t ChecksumField = 124;
constexpr std::size_t TablesOffset = 128;

using RecordHeader = std::array<std::byte, RecordHeaderSize>;

bool IsRecord(std::span<const std::byte> header, std::uint64_t recordId) {
    return HasRecordSignature(header, 0) && LoadUInt64(header.data() + 8) == recordId;
}

std::uint32_t Checksum(std::uint32_t start, std::span<const std::byte> bytes) {
    return static_cast<std::uint32_t>(
        crc32(start, reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size())));
}

}  // namespace

std::uint32_t ChunkHeaderChecksum(std::span<const std::byte> header) {
    const std::uint32_t fields = Checksum(0, header.first(FixedFieldsSize));
    return Checksum(fields, header.subspan(TablesOffset, ChunkHeaderSize - TablesOffset));
}

std::uint32_t StoredHeaderChecksum(std::span<const std::byte> header) {
    return LoadUInt32(&header[ChecksumField]);
}

bool ReadChunkHeader(const RandomAccessFile& file, std::uint64_t offset, ChunkPlace& place) {
    std::array<std::byte, ChunkHeaderSize + RecordHeaderSize> bytes;
    if (file.Size() < offset + ChunkSize || file.ReadAt(offset, bytes) != bytes.size() || !HasChunkSignature(bytes) ||
        ChunkHeaderChecksum(bytes) != StoredHeaderChecksum(bytes)) {
        return false;
    }
    const std::uint64_t count = LoadUInt64(&bytes[LastNumberField]) - LoadUInt64(&bytes[FirstNumberField]) + 1;
    const std::uint32_t last = LoadUInt32(&bytes[LastRecordField]);
    const std::uint32_t end = LoadUInt32(&bytes[FreeSpaceField]);
    place = {offset, LoadUInt64(&bytes[FirstIdField]), LoadUInt64(&bytes[LastIdField]),
             static_cast<std::uint32_t>(count)};
    if (last < ChunkHeaderSize || end > ChunkSize || end < last + SmallestRecord || count == 0 ||
        count > (end - ChunkHeaderSize) / SmallestRecord || place.FirstRecordId > place.LastRecordId ||
        !IsRecord(std::span(bytes).subspan(ChunkHeaderSize), place.FirstRecordId)) {
        return false;
    }
    RecordHeader record;
    return file.ReadAt(offset + last, record) == record.size() && IsRecord(record, place.LastRecordId) &&
           LoadUInt32(record.data() + 4) == end - last;
}

}  // namespace corvina::evtx
