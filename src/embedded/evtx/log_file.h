// Reading .evtx files: the file, its chunks and their records, whatever state they are in. Any bytes at all give
// records or a clear error. Chunks are copied out of the file one at a time (64 KiB) before they are looked at, so a
// file that changes or shrinks while it is open can never pull checked data away under the reader.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "embedded/evtx/system_field.h"
#include "embedded/evtx/system_values.h"
#include "platform/random_access_file.h"

namespace corvina::evtx {

class EventTree;
class KeptTemplates;
template <typename Char>
class TextBuffer;

inline constexpr std::size_t ChunkSize = 65536;
inline constexpr std::size_t FileHeaderSize = 4096;

struct LogLayout;
struct RecordCopy;

// The facts of a file's header, as they stand there: in a dirty file they are out of date.
struct FileHeader {
    std::uint64_t FirstChunk = 0;
    std::uint64_t LastChunk = 0;
    std::uint64_t NextRecordId = 0;
    std::uint16_t MinorVersion = 0;
    std::uint16_t MajorVersion = 0;
    std::uint16_t ChunkCount = 0;
    std::uint32_t Flags = 0;  // 1 dirty, 2 full, 4 no checksums
    bool ChecksumValid = false;
};

// One record that was found sound by its two sizes.
struct RecordPlace {
    std::uint32_t Offset = 0;  // in its chunk
    std::uint32_t Size = 0;    // of the whole record
    std::uint64_t RecordId = 0;
    std::uint64_t WrittenTime = 0;  // file time, UTC
};

// What was wrong with a chunk.
struct ChunkDamage {
    bool HeaderChecksum = false;
    bool RecordsChecksum = false;
    bool MissingHeader = false;  // no chunk signature, but records were found by their own
    std::uint32_t SkippedRecords =
        0;  // records whose sizes differ, that leave the chunk or whose binary XML is invalid
};

// One chunk with its records, owned bytes included; independent of the file it came from. Not thread-safe: templates
// are decoded on first use and kept, also for the other chunks of the file.
class Chunk {
  public:
    // `bytes` is what the file holds at the chunk's place; a short last chunk is padded with zeros. Without any it is a
    // chunk that has no records and takes no memory for them.
    explicit Chunk(std::span<const std::byte> bytes, bool verifyChecksums = true);
    // The same without a copy: the first `size` bytes of `buffer`, which has room for a whole chunk unless there is
    // none. `kept` are the templates that it shares with other chunks; it may be none.
    Chunk(std::unique_ptr<std::byte[]> buffer, std::size_t size, bool verifyChecksums,
          std::shared_ptr<KeptTemplates> kept);
    ~Chunk();
    Chunk(const Chunk&) = delete;
    Chunk& operator=(const Chunk&) = delete;

    // In the order of the chunk. Empty for an unused or unreadable chunk. Records whose binary XML turns out to be
    // invalid are not in the list: it holds exactly the records that can be rendered. Each is run once to find out.
    std::span<const RecordPlace> Records() const;

    // The records by their two sizes alone, for readers that want few of them or find out by rendering: some may turn
    // out to be invalid. IsSound says whether one of them is in Records() as well.
    std::span<const RecordPlace> Places() const;
    bool IsSound(const RecordPlace& record) const;

    // Counts the records that are not in Records(), so it runs each once as well.
    const ChunkDamage& Damage() const;

    // The System values, straight from the template's slots. False when the record cannot be decoded.
    bool ReadSystem(const RecordPlace& record, SystemValues& values) const;

    // Only the wanted ones; the others are left as they are. `certain` becomes those of the wanted fields whose value,
    // or absence, is for sure what the event's XML shows: all of them, but for oddly made events.
    bool ReadSystem(const RecordPlace& record, SystemFieldSet wanted, SystemValues& values,
                    SystemFieldSet& certain) const;

    // The whole event as elements, attributes and typed values. False when the record cannot be decoded or has too many
    // of them. The chunk must outlive the tree's use.
    bool ReadTree(const RecordPlace& record, EventTree& tree) const;

    // The values of EventData or UserData in document order. False when the record cannot be decoded.
    bool ReadData(const RecordPlace& record, std::vector<DataValue>& values) const;

    // The RenderingInfo of a forwarded event. False when the event has none.
    bool ReadRenderingInfo(const RecordPlace& record, RenderingInfo& info) const;

    // Appends the event's XML as the platform writes it: no declaration, no line breaks between elements, attributes in
    // single quotes. On failure nothing is appended and the result is false. Characters that XML cannot hold (control
    // characters, half surrogates) are written so that the result stays well-formed.
    bool AppendXml(const RecordPlace& record, std::wstring& xml) const;
    bool AppendXml(const RecordPlace& record, std::string& utf8) const;
    bool AppendXml(const RecordPlace& record, TextBuffer<char>& utf8) const;

    // Makes a copy of the record that can be written into another chunk. False when the record cannot be decoded.
    bool Copy(const RecordPlace& record, RecordCopy& copy) const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

// Where a chunk stands and what it holds, without its records having been decoded.
struct ChunkPlace {
    std::uint64_t FileOffset = 0;
    std::uint64_t FirstRecordId = 0;
    std::uint64_t LastRecordId = 0;
    std::uint32_t RecordCount = 0;  // as its header says, or by walking the records' sizes; binary XML is not looked at
};

// An open log file.
class LogFile {
  public:
    // Opens a file. On failure returns none and an error code: 2, 3, 5 as the system gives them, 1500 when the file is
    // not an event log (empty, shorter than a header, another signature, a major version other than 3).
    // `known` may be the layout that the same file had before and may have still.
    static std::shared_ptr<const LogFile> Open(const std::filesystem::path& path, std::uint32_t& error,
                                               std::shared_ptr<const LogLayout> known = nullptr);

    // The same over any source of bytes, for tests and fuzzing.
    static std::shared_ptr<const LogFile> Open(std::unique_ptr<RandomAccessFile> file, std::uint32_t& error,
                                               std::shared_ptr<const LogLayout> known = nullptr);

    ~LogFile();

    const FileHeader& Header() const;
    std::uint64_t Size() const;

    // All chunks that hold records, oldest records first (a log that has wrapped does not start with its first chunk).
    // Found by walking the whole file in steps of 64 KiB: the counts in the header of a dirty file are stale. Chunks
    // with a sound header are believed about their records; the records of others are walked.
    std::span<const ChunkPlace> Chunks() const;

    // What was found out about them; `known` if that still held when the file was opened.
    const std::shared_ptr<const LogLayout>& Layout() const;

    // Reads one chunk of Chunks(). Never none: a chunk that can no longer be read has no records.
    std::shared_ptr<const Chunk> ReadChunk(std::size_t index) const;

    // Whether ReadChunk could not read all that the file held when it was opened: for those who must not take a part of
    // a log for the whole.
    bool HasReadFailed() const;

    // The number of records in all chunks, as Chunks() counts them.
    std::uint64_t RecordCount() const;
    std::uint64_t OldestRecordId() const;  // 0 when there are no records

    // Bytes after the last whole chunk, and 64 KiB places that hold neither a chunk nor zeros.
    std::uint64_t ForeignBytes() const;
    std::uint64_t ForeignChunks() const;

  private:
    struct State;
    explicit LogFile(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace corvina::evtx
