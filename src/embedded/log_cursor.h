// Walking the events of one log that a filter lets through, in either direction, with one chunk in memory at a time.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "embedded/evtx/log_file.h"
#include "embedded/log_cache.h"
#include "embedded/xpath/filter.h"

namespace corvina::embedded {

// An event in the memory of its chunk.
struct EventPlace {
    std::shared_ptr<const evtx::Chunk> Chunk;
    evtx::RecordPlace Record;
};

class LogCursor {
  public:
    // `log` may be none: the log of a channel that has never been written to is empty.
    LogCursor(std::shared_ptr<const OpenLogFile> log, std::shared_ptr<const xpath::Filter> filter, bool newestFirst);

    // Moves to the next event; false at the end.
    bool Next(EventPlace& place);

  private:
    bool NextChunk();
    bool MayHoldMatches(std::size_t chunkIndex) const;
    bool Matches(const evtx::RecordPlace& record);

    std::shared_ptr<const OpenLogFile> log_;
    std::shared_ptr<const xpath::Filter> filter_;
    bool newestFirst_;
    std::size_t chunksDone_ = 0;
    std::shared_ptr<const evtx::Chunk> chunk_;
    std::size_t recordsDone_ = 0;  // of chunk_

    // Reused for each event that the filter is asked about.
    evtx::SystemValues system_;
    std::vector<evtx::DataValue> data_;
};

}  // namespace corvina::embedded
