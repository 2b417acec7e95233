// Operations of the embedded event log that write logs: export, and clearing with or without a backup.
#include <algorithm>
#include <limits>

#include "base/path_text.h"
#include "embedded/embedded_state.h"
#include "embedded/evtx/log_file_writer.h"
#include "embedded/evtx/record_copy.h"

namespace corvina::embedded {
namespace {

constexpr DWORD ExportPathFlags = EvtExportLogChannelPath | EvtExportLogFilePath;
constexpr DWORD AllExportFlags = ExportPathFlags | EvtExportLogTolerateQueryErrors | EvtExportLogOverwrite;
// What an export hands on to its query means the same there.
constexpr DWORD SharedFlags = ExportPathFlags | EvtExportLogTolerateQueryErrors;
static_assert(EvtExportLogChannelPath == static_cast<int>(EvtQueryChannelPath) &&
              EvtExportLogFilePath == static_cast<int>(EvtQueryFilePath) &&
              EvtExportLogTolerateQueryErrors == static_cast<int>(EvtQueryTolerateQueryErrors));

bool AreExportFlagsValid(DWORD flags) {
    const DWORD path = flags & ExportPathFlags;
    return (flags & ~AllExportFlags) == 0 && path != 0 && path != ExportPathFlags;
}

// Damaged records are not among the events of a query, so they are left out; so is what fits into no chunk, which only
// a forged log has. One bad record never keeps the rest from being saved. But what could not be read at all may be
// sound: an export without it would pass for the whole, and a log would be cleared for it.
std::uint32_t WriteEvents(EventQuery& events, evtx::LogFileWriter& writer) {
    if (const std::uint32_t error = writer.Begin()) {
        return error;
    }
    EventPlace place;
    evtx::RecordCopy copy;
    while (events.Next(place)) {
        if (!place.Chunk->Copy(place.Record, copy)) {
            return error::OutOfMemory;
        }
        if (const std::uint32_t error = writer.Add(copy)) {
            return error;
        }
    }
    return events.HasReadFailed() ? error::DeviceError : writer.Finish();
}

// The record identifier that the log's next event would get. The header of a file that was not closed is behind its
// records; a header that is damaged says nothing.
std::uint64_t NextRecordId(const evtx::LogFile& log) {
    std::uint64_t next = std::max<std::uint64_t>(log.Header().ChecksumValid ? log.Header().NextRecordId : 1, 1);
    for (const evtx::ChunkPlace& chunk : log.Chunks()) {
        next = std::max(next, chunk.LastRecordId + (chunk.LastRecordId < std::numeric_limits<std::uint64_t>::max()));
    }
    return next;
}

}  // namespace

// The events come oldest first and are numbered from 1 as records of the new log, while each keeps the record
// identifier that it tells of itself. Written beside the target, so that the target may be one of the logs that are
// read.
BOOL EmbeddedEventLog::EvtExportLog(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, LPCWSTR targetFilePath,
                                    DWORD flags) {
    return state_->Do([&]() -> std::uint32_t {
        if (!AreExportFlagsValid(flags) || targetFilePath == nullptr || *targetFilePath == L'\0') {
            return error::InvalidParameter;
        }
        const DWORD queryFlags = (flags & SharedFlags) | EvtQueryForwardDirection;
        std::unique_ptr<EventQuery> events;
        if (const std::uint32_t error = state_->OpenQuery(session, path, query, queryFlags, events)) {
            return error;
        }
        const auto existing = (flags & EvtExportLogOverwrite) != 0 ? ExistingFile::Replace : ExistingFile::Keep;
        evtx::LogFileWriter writer(PathFromText(targetFilePath), 1, existing);
        return WriteEvents(*events, writer);
    });
}

// The empty log goes on counting where the old one ended, as the platform does. Queries and handles that are open stay
// with the old file. A file that is no log at all can be cleared, too, but not backed up.
BOOL EmbeddedEventLog::EvtClearLog(EVT_HANDLE session, LPCWSTR channelPath, LPCWSTR targetFilePath, DWORD flags) {
    return state_->Do([&]() -> std::uint32_t {
        std::shared_ptr<ComputerFolder> computer;
        std::shared_ptr<const Channel> channel;
        if (const std::uint32_t error = state_->FindChannel(session, channelPath, computer, channel)) {
            return error;
        }
        if (flags != 0) {
            return error::InvalidParameter;
        }
        std::shared_ptr<const OpenLogFile> log;
        const std::uint32_t openError = state_->OpenChannelLog(*channel, log);
        if (openError != error::Success && openError != error::EventLogFileCorrupt) {
            return openError;
        }
        // A log that cannot be cleared is found out about before a backup of it is made.
        evtx::LogFileWriter empty(channel->File, log == nullptr ? 1 : NextRecordId(log->File()));
        if (const std::uint32_t error = channel->HasFile ? empty.Begin() : error::Success) {
            return error;
        }
        if (targetFilePath != nullptr) {
            std::unique_ptr<EventQuery> events;
            const DWORD queryFlags = EvtQueryChannelPath | EvtQueryForwardDirection;
            if (const std::uint32_t error = state_->OpenQuery(session, channelPath, nullptr, queryFlags, events)) {
                return error;
            }
            evtx::LogFileWriter backup(PathFromText(targetFilePath), 1, ExistingFile::Keep);
            if (const std::uint32_t error = WriteEvents(*events, backup)) {
                return error;
            }
        }
        return channel->HasFile ? empty.Finish() : error::Success;
    });
}

}  // namespace corvina::embedded
