// Log files that are open. A file is walked once and shared by all queries over it, until it changes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <utility>

#include "embedded/evtx/log_file.h"
#include "embedded/file_facts.h"
#include "embedded/log_knowledge.h"
#include "embedded/record_values.h"
#include "embedded/xpath/selection.h"

namespace corvina::embedded {

class OpenLogFile {
  public:
    OpenLogFile(std::shared_ptr<const evtx::LogFile> file, const FileFacts& facts,
                std::shared_ptr<CarriedRecordIds> recordIds)
        : file_(std::move(file)), facts_(facts), recordIds_(std::move(recordIds)) {}

    const evtx::LogFile& File() const { return *file_; }

    // As they were when the file was opened.
    const FileFacts& Facts() const { return facts_; }

    // The chunks, from the first of the pair up to the second, that events selected by their record ids can stand in;
    // all of them when it is not known better.
    std::pair<std::size_t, std::size_t> ChunksOf(const xpath::Selection& selection) const;

    // Whether one of these can hold an event that is selected, as far as that is known.
    bool MayHold(std::size_t chunkIndex, const xpath::Selection& selection) const;

    // Learns which record ids the events of a chunk carry that has been read.
    void NoteRecordIds(std::size_t chunkIndex, const evtx::Chunk& chunk, RecordMemory& memory) const;

  private:
    bool EventsCarryIdsOfRecords() const;

    std::shared_ptr<const evtx::LogFile> file_;
    FileFacts facts_;
    std::shared_ptr<CarriedRecordIds> recordIds_;
};

class LogCache {
  public:
    // On failure returns none and 2 or 3 for a missing file or folder, 5 when the file is refused, 1500 when it is no
    // log.
    std::shared_ptr<const OpenLogFile> Open(const std::filesystem::path& path, std::uint32_t& error);

  private:
    void ForgetClosedFiles();

    std::map<std::filesystem::path, std::weak_ptr<const OpenLogFile>> open_;
    KnownLogs known_;
    std::size_t nextForgetting_ = 16;  // files in open_
};

}  // namespace corvina::embedded
