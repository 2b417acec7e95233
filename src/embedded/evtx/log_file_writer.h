// Writing .evtx files that other readers accept: right checksums, string and template tables, templates stored once a
// chunk. A file is written beside its target and renamed when complete, so a target is whole or absent.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "base/identifiers.h"
#include "embedded/evtx/record_copy.h"
#include "embedded/evtx/system_values.h"
#include "platform/replacing_file.h"

namespace corvina::evtx {

// A typed data value of an event to be written.
struct WriterValue {
    enum class Kind { Text, UInt32, UInt64, Int32, HexInt32, HexInt64, Boolean, Guid, Sid, FileTime, Binary };
    std::wstring Name;  // the Name attribute of its Data element; empty for none
    Kind Type = Kind::Text;
    std::wstring Text;             // Kind::Text
    std::uint64_t Number = 0;      // the integer kinds, Boolean and FileTime
    std::vector<std::byte> Bytes;  // Guid (16 bytes), Sid (one whole valid identifier), Binary
};

// An event to be written. System.EventRecordId is given by the writer when it is absent.
struct WriterEvent {
    SystemValues System;
    // Classic events have an EventID with qualifiers, no provider GUID and unnamed Data elements; all follow from the
    // values. An unnamed value of bytes is the Binary element of a classic event. EventData is written even when there
    // are no values.
    std::vector<WriterValue> Data;
};

class LogFileWriter {
  public:
    // `target` is written when Finish succeeds. The temporary file is removed by the destructor otherwise.
    LogFileWriter(std::filesystem::path target, std::uint64_t firstRecordId = 1,
                  ExistingFile existing = ExistingFile::Replace);
    ~LogFileWriter();
    LogFileWriter(const LogFileWriter&) = delete;
    LogFileWriter& operator=(const LogFileWriter&) = delete;

    // Creates the temporary file, which the first event would do otherwise. Returns 0 or the file system's error code.
    std::uint32_t Begin();

    // Adds one event. Returns 0, or an error code: 87 when the event does not fit into a chunk or one of its values is
    // not of its kind, otherwise the file system's. After an error nothing more can be added.
    std::uint32_t Add(const WriterEvent& event);

    // Adds a copy of another log's record under the next record identifier; what the event says of itself, its own
    // EventRecordID included, stays. A copy that is too large for a chunk, which no sound log has, is left out and
    // counted. Returns 0 or the file system's error code, after which nothing more can be added.
    std::uint32_t Add(const RecordCopy& record);

    // Copies that were left out so far.
    std::uint64_t LeftOut() const;

    // Writes what is left and the file's header, and renames the file to its target. Returns 0 or an error code.
    // Without any event the log is an empty one.
    std::uint32_t Finish();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace corvina::evtx
