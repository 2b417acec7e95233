// Log files that are open. A file is opened and walked once and shared by all queries over it, until it changes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>

#include "embedded/evtx/log_file.h"
#include "embedded/file_facts.h"

namespace corvina::embedded {

class OpenLogFile {
  public:
    OpenLogFile(std::shared_ptr<const evtx::LogFile> file, const FileFacts& facts)
        : file_(std::move(file)), facts_(facts) {}

    const evtx::LogFile& File() const { return *file_; }

    // As they were when the file was opened.
    const FileFacts& Facts() const { return facts_; }

    // Whether the events carry the record ids that the chunks are listed under. In an exported log they do not: its
    // records are counted anew while the events keep the ids of the log they came from. Found by looking at the first
    // and the last event, once.
    bool EventsCarryRecordIds() const;

  private:
    std::shared_ptr<const evtx::LogFile> file_;
    FileFacts facts_;
    mutable std::optional<bool> carryRecordIds_;
};

class LogCache {
  public:
    // On failure returns none and 2 or 3 for a missing file or folder, 5 when the file is refused, 1500 when it is no
    // log.
    std::shared_ptr<const OpenLogFile> Open(const std::filesystem::path& path, std::uint32_t& error);

  private:
    void ForgetClosedFiles();

    std::map<std::filesystem::path, std::weak_ptr<const OpenLogFile>> open_;
    std::size_t nextForgetting_ = 16;  // files in open_
};

}  // namespace corvina::embedded
