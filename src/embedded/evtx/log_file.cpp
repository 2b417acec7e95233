#include "embedded/evtx/log_file.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <zlib.h>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/kept_templates.h"
#include "embedded/evtx/log_layout.h"
#include "platform/error_codes.h"

namespace corvina::evtx {
namespace {

constexpr char FileSignature[] = "ElfFile";  // with its closing zero: eight bytes
constexpr std::size_t HeaderFieldsSize = 120;
constexpr std::size_t HeaderChecksumField = 124;
constexpr std::size_t SmallestHeader = 128;
constexpr std::uint16_t SupportedVersion = 3;
constexpr std::uint32_t NoChecksumsFlag = 4;

// False when the bytes are not the header of an event log.
bool ReadHeader(std::span<const std::byte> bytes, FileHeader& header, std::uint64_t& firstChunk) {
    const std::byte* data = bytes.data();
    if (std::memcmp(data, FileSignature, sizeof FileSignature) != 0) {
        return false;
    }
    header.FirstChunk = LoadUInt64(data + 8);
    header.LastChunk = LoadUInt64(data + 16);
    header.NextRecordId = LoadUInt64(data + 24);
    header.MinorVersion = LoadUInt16(data + 36);
    header.MajorVersion = LoadUInt16(data + 38);
    header.ChunkCount = LoadUInt16(data + 42);
    header.Flags = LoadUInt32(data + 120);
    const auto checksum = crc32(0, reinterpret_cast<const unsigned char*>(data), HeaderFieldsSize);
    header.ChecksumValid = checksum == LoadUInt32(data + HeaderChecksumField);
    // A header that is not whole is not believed about where the chunks are.
    const std::uint16_t blockSize = LoadUInt16(data + 40);
    firstChunk = header.ChecksumValid && blockSize >= SmallestHeader ? blockSize : FileHeaderSize;
    return header.MajorVersion == SupportedVersion;
}

}  // namespace

struct LogFile::State {
    explicit State(std::unique_ptr<RandomAccessFile> file) : File(std::move(file)) {}

    std::unique_ptr<RandomAccessFile> File;
    FileHeader Header;
    std::shared_ptr<const LogLayout> Layout;
    bool ReadFailed = false;
    std::shared_ptr<KeptTemplates> Templates = std::make_shared<KeptTemplates>();
    // For places that cannot be read, even for want of memory.
    std::shared_ptr<const Chunk> EmptyChunk = std::make_shared<const Chunk>(std::span<const std::byte>());
};

LogFile::LogFile(std::unique_ptr<State> state) : state_(std::move(state)) {}

LogFile::~LogFile() = default;

std::shared_ptr<const LogFile> LogFile::Open(const std::filesystem::path& path, std::uint32_t& error,
                                             std::shared_ptr<const LogLayout> known) {
    auto file = OpenRandomAccessFile(path, error);
    return file == nullptr ? nullptr : Open(std::move(file), error, std::move(known));
}

std::shared_ptr<const LogFile> LogFile::Open(std::unique_ptr<RandomAccessFile> file, std::uint32_t& error,
                                             std::shared_ptr<const LogLayout> known) {
    try {
        auto state = std::make_unique<State>(std::move(file));
        std::vector<std::byte> header(FileHeaderSize);
        std::uint64_t firstChunk = 0;
        if (state->File->ReadAt(0, header) < header.size() || !ReadHeader(header, state->Header, firstChunk)) {
            error = error::EventLogFileCorrupt;
            return nullptr;
        }
        const bool isKnown = known != nullptr && StillHasLayout(*state->File, *known);
        state->Layout = isKnown ? std::move(known)
                                : FindLayout(*state->File, firstChunk, (state->Header.Flags & NoChecksumsFlag) == 0);
        error = error::Success;
        return std::shared_ptr<const LogFile>(new LogFile(std::move(state)));
    } catch (const std::bad_alloc&) {
        error = error::OutOfMemory;
        return nullptr;
    }
}

const FileHeader& LogFile::Header() const {
    return state_->Header;
}

std::uint64_t LogFile::Size() const {
    return state_->File->Size();
}

std::span<const ChunkPlace> LogFile::Chunks() const {
    return state_->Layout->Chunks;
}

const std::shared_ptr<const LogLayout>& LogFile::Layout() const {
    return state_->Layout;
}

std::shared_ptr<const Chunk> LogFile::ReadChunk(std::size_t index) const {
    if (index >= Chunks().size()) {
        return state_->EmptyChunk;
    }
    try {
        auto buffer = std::make_unique_for_overwrite<std::byte[]>(ChunkSize);
        const std::uint64_t offset = Chunks()[index].FileOffset;
        const std::size_t size = state_->File->ReadAt(offset, {buffer.get(), ChunkSize});
        state_->ReadFailed |= size < std::min<std::uint64_t>(ChunkSize, state_->File->Size() - offset);
        return std::make_shared<const Chunk>(std::move(buffer), size, (state_->Header.Flags & NoChecksumsFlag) == 0,
                                             state_->Templates);
    } catch (const std::bad_alloc&) {
        state_->ReadFailed = true;
        return state_->EmptyChunk;
    }
}

bool LogFile::HasReadFailed() const {
    return state_->ReadFailed;
}

std::uint64_t LogFile::RecordCount() const {
    return state_->Layout->Records;
}

std::uint64_t LogFile::OldestRecordId() const {
    return Chunks().empty() ? 0 : Chunks().front().FirstRecordId;
}

std::uint64_t LogFile::ForeignBytes() const {
    return state_->Layout->ForeignBytes;
}

std::uint64_t LogFile::ForeignChunks() const {
    return state_->Layout->ForeignChunks;
}

}  // namespace corvina::evtx
