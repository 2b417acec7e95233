#include "embedded/evtx/log_file_writer.h"

#include <algorithm>
#include <new>
#include <utility>
#include <zlib.h>

#include "embedded/evtx/log_file.h"
#include "embedded/evtx/writer_chunk.h"
#include "platform/error_codes.h"

namespace corvina::evtx {
namespace {

// More characters than these, in one text or in all names and texts of an event, fit into no chunk.
constexpr std::size_t LongestText = ChunkSize / 2;
constexpr std::size_t ValueDescriptorSize = 4;

bool IsSid(const std::vector<std::byte>& bytes) {
    return SidLength(bytes) == bytes.size() && !bytes.empty();
}

bool IsWritable(const WriterValue& value) {
    switch (value.Type) {
        case WriterValue::Kind::Guid:
            return value.Bytes.size() == std::tuple_size_v<GuidBytes>;
        case WriterValue::Kind::Sid:
            return IsSid(value.Bytes);
        default:
            return true;
    }
}

// Whether the event can be written at all: readers would call a malformed value, or one cut off, damage.
bool IsWritable(const WriterEvent& event) {
    const SystemValues& system = event.System;
    const std::size_t longest = std::max(std::max(system.ProviderName.size(), system.EventSourceName.size()),
                                         std::max(system.Channel.size(), system.Computer.size()));
    if (longest > LongestText || (!system.UserSid.empty() && !IsSid(system.UserSid))) {
        return false;
    }
    // Bounded before anything is built from them, so that no event takes more memory than a few chunks.
    std::size_t characters = 0;
    std::size_t bytes = event.Data.size() * ValueDescriptorSize;
    for (const WriterValue& value : event.Data) {
        characters += value.Name.size() + value.Text.size();
        bytes += value.Bytes.size();
        if (characters > LongestText || bytes > ChunkSize || !IsWritable(value)) {
            return false;
        }
    }
    return true;
}

std::string FileHeaderBlock(std::uint64_t chunkCount, std::uint64_t nextRecordId) {
    std::string block("ElfFile\0", 8);
    AppendInteger(block, 0, 8);
    AppendInteger(block, chunkCount - 1, 8);
    AppendInteger(block, nextRecordId, 8);
    AppendInteger(block, 128, 4);
    AppendInteger(block, 1, 2);
    AppendInteger(block, 3, 2);
    AppendInteger(block, FileHeaderSize, 2);
    AppendInteger(block, chunkCount, 2);
    block.resize(120, '\0');
    const uLong checksum = crc32(0, reinterpret_cast<const Bytef*>(block.data()), 120);
    AppendInteger(block, 0, 4);
    AppendInteger(block, checksum, 4);
    block.resize(FileHeaderSize, '\0');
    return block;
}

}  // namespace

struct LogFileWriter::State {
    State(std::filesystem::path target, std::uint64_t firstRecordId, ExistingFile existing)
        : Target(std::move(target)), Existing(existing), NextRecordId(firstRecordId) {}

    // Room for the header is made with the first bytes, so that chunks follow one another without seeking.
    std::uint32_t Begin();
    std::uint32_t Add(const WriterEvent& event);
    std::uint32_t Add(const RecordCopy& record);
    std::uint32_t Finish();

    // Runs a step unless an earlier one failed. The first failure is kept, and takes the temporary file with it.
    template <typename Step>
    std::uint32_t Run(Step step) {
        if (Failure == error::Success) {
            try {
                Failure = step();
            } catch (const std::bad_alloc&) {
                Failure = error::OutOfMemory;
            } catch (const std::filesystem::filesystem_error&) {
                Failure = error::AccessDenied;
            }
            if (Failure != error::Success) {
                File = nullptr;
            }
        }
        return Failure;
    }

    std::uint64_t LeftOut = 0;

  private:
    std::uint32_t WriteChunk();
    template <typename Record>
    std::uint32_t Append(const Record& record, std::uint64_t recordId, bool& fits);

    std::filesystem::path Target;
    ExistingFile Existing;
    std::unique_ptr<ReplacingFile> File;
    ChunkBuilder Chunk;
    std::uint64_t NextRecordId;
    std::uint64_t RecordCount = 0;
    std::uint64_t ChunkCount = 0;
    std::uint32_t Failure = error::Success;
    bool Finished = false;
};

std::uint32_t LogFileWriter::State::Begin() {
    std::uint32_t failure = error::Success;
    if (File != nullptr) {
        return failure;
    }
    File = CreateReplacingFile(Target, Existing, failure);
    return File == nullptr ? failure : File->Append(std::string(FileHeaderSize, '\0'));
}

std::uint32_t LogFileWriter::State::WriteChunk() {
    const std::uint32_t failure = File->Append(Chunk.Seal());
    ++ChunkCount;
    Chunk.Start(RecordCount + 1);
    return failure;
}

// Adds to this chunk or, when it is full, to the next one, if one is large enough at all.
template <typename Record>
std::uint32_t LogFileWriter::State::Append(const Record& record, std::uint64_t recordId, bool& fits) {
    if (const std::uint32_t failure = Begin(); failure != error::Success) {
        return failure;
    }
    fits = Chunk.Append(record, recordId);
    if (!fits && !Chunk.IsEmpty()) {
        if (const std::uint32_t failure = WriteChunk(); failure != error::Success) {
            return failure;
        }
        fits = Chunk.Append(record, recordId);
    }
    if (fits) {
        ++RecordCount;
        NextRecordId = std::max(NextRecordId, recordId + 1);
    }
    return error::Success;
}

std::uint32_t LogFileWriter::State::Add(const WriterEvent& event) {
    if (Finished || !IsWritable(event)) {
        return error::InvalidParameter;
    }
    bool fits = true;
    const std::uint32_t failure = Append(event, event.System.EventRecordId.value_or(NextRecordId), fits);
    return failure == error::Success && !fits ? error::InvalidParameter : failure;
}

std::uint32_t LogFileWriter::State::Add(const RecordCopy& record) {
    if (Finished) {
        return error::InvalidParameter;
    }
    bool fits = true;
    const std::uint32_t failure = Append(record, NextRecordId, fits);
    LeftOut += fits ? 0 : 1;
    return failure;
}

std::uint32_t LogFileWriter::State::Finish() {
    if (Finished) {
        return error::InvalidParameter;
    }
    Finished = true;
    std::uint32_t failure = Begin();
    // A log without events has one chunk without records, as the platform makes it.
    if (failure == error::Success && (!Chunk.IsEmpty() || ChunkCount == 0)) {
        failure = WriteChunk();
    }
    if (failure == error::Success) {
        failure = File->WriteFront(FileHeaderBlock(ChunkCount, NextRecordId));
    }
    return failure != error::Success ? failure : File->Commit();
}

LogFileWriter::LogFileWriter(std::filesystem::path target, std::uint64_t firstRecordId, ExistingFile existing)
    : state_(std::make_unique<State>(std::move(target), firstRecordId, existing)) {}

LogFileWriter::~LogFileWriter() = default;

std::uint32_t LogFileWriter::Begin() {
    return state_->Run([this] { return state_->Begin(); });
}

std::uint32_t LogFileWriter::Add(const WriterEvent& event) {
    return state_->Run([&] { return state_->Add(event); });
}

std::uint32_t LogFileWriter::Add(const RecordCopy& record) {
    return state_->Run([&] { return state_->Add(record); });
}

std::uint64_t LogFileWriter::LeftOut() const {
    return state_->LeftOut;
}

std::uint32_t LogFileWriter::Finish() {
    return state_->Run([this] { return state_->Finish(); });
}

}  // namespace corvina::evtx
