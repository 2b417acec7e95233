// What was found out about a log while it was open: where its chunks stand, and which record ids its events carry. It
// is kept when the log is closed, so that fetching one event after another does not look at every chunk each time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "embedded/evtx/log_layout.h"
#include "embedded/file_facts.h"

namespace corvina::embedded {

struct RecordIdRange {
    std::uint64_t First = 0;
    std::uint64_t Last = 0;  // smaller than First: no event carries an id
};

// The record ids in the events of a log. In an exported log they are not those that the chunks are listed under: its
// records are counted anew while the events keep the ids of the log they came from.
struct CarriedRecordIds {
    std::optional<bool> AreThoseOfRecords;             // as the first and the last event have it
    std::vector<std::optional<RecordIdRange>> Chunks;  // of those that were read, where they are others; else empty
};

struct LogKnowledge {
    FileFacts Facts;  // of the file when this was found out
    std::shared_ptr<const evtx::LogLayout> Layout;
    std::shared_ptr<CarriedRecordIds> RecordIds;  // grows while the log is read
};

// The knowledge about the logs that were opened last.
class KnownLogs {
  public:
    // None when nothing is known, or the file has been replaced or written to since.
    std::optional<LogKnowledge> Find(const std::filesystem::path& path, const FileFacts& facts);

    void Keep(const std::filesystem::path& path, LogKnowledge knowledge);

  private:
    struct Entry {
        std::filesystem::path Path;
        LogKnowledge Knowledge;
    };
    using Entries = std::list<Entry>;

    void Forget(Entries::iterator entry);

    Entries entries_;  // the ones used last stand first
    std::map<std::filesystem::path, Entries::iterator> places_;
    std::size_t chunks_ = 0;  // of all of them
};

}  // namespace corvina::embedded
