// What a log file holds, in numbers.
#pragma once

#include <cstdint>
#include <string>

#include "embedded/evtx/log_file.h"

namespace corvina::tools {

struct LogSummary {
    std::uint64_t FileSize = 0;
    evtx::FileHeader Header;
    std::uint64_t Chunks = 0;
    std::uint64_t Records = 0;
    std::uint64_t FirstRecordId = 0;
    std::uint64_t LastRecordId = 0;
    std::uint64_t FirstWritten = 0;  // file times
    std::uint64_t LastWritten = 0;

    // Damage by kind.
    std::uint64_t WrongHeaderChecksums = 0;
    std::uint64_t WrongRecordChecksums = 0;
    std::uint64_t MissingHeaders = 0;
    std::uint64_t SkippedRecords = 0;
    std::uint64_t ForeignChunks = 0;
    std::uint64_t ForeignBytes = 0;
};

// Reads the whole file.
LogSummary Summarize(const evtx::LogFile& file);

// The summary as lines of UTF-8 text under the file's name.
std::string SummaryText(const std::string& name, const LogSummary& summary);

}  // namespace corvina::tools
