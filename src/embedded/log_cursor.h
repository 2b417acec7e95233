// Walking the events of one log that a query takes, in either direction, with one chunk in memory at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "embedded/evtx/log_file.h"
#include "embedded/log_cache.h"
#include "embedded/record_values.h"
#include "embedded/xpath/selection.h"

namespace corvina::embedded {

// An event in the memory of its chunk.
struct EventPlace {
    std::shared_ptr<const evtx::Chunk> Chunk;
    evtx::RecordPlace Record;
};

class LogCursor {
  public:
    // Stands before the first event. `log` may be none: the log of a channel that has never been written to is empty.
    LogCursor(std::shared_ptr<const OpenLogFile> log, std::shared_ptr<const xpath::Selection> selection,
              bool newestFirst);

    // Moves to the next event; false at the end.
    bool Next();

    // The event that the cursor has been moved to. False when the file has changed since and no longer holds it.
    bool Get(EventPlace& place);

    // When that event was created, or written if it does not say; a file time.
    std::uint64_t Time();

    // Whether a part of the log could not be read, so that events are missing.
    bool HasReadFailed() const { return log_ != nullptr && log_->File().HasReadFailed(); }

    // Frees the chunk; it is read again when it is needed.
    void LetGoOfChunk() { chunk_ = nullptr; }

  private:
    bool NextChunk();
    bool HoldChunk();
    std::size_t CurrentChunk() const;
    evtx::RecordPlace RecordAt(std::size_t recordsBefore) const;
    bool Matches(const evtx::RecordPlace& record);

    std::shared_ptr<const OpenLogFile> log_;
    std::shared_ptr<const xpath::Selection> selection_;
    bool newestFirst_;
    bool takesEverything_;
    std::size_t firstChunk_ = 0;  // no event outside of these is taken
    std::size_t chunkCount_ = 0;
    bool insideChunk_ = false;
    std::size_t chunksDone_ = 0;   // of those, the one that the cursor is in included
    std::size_t recordsDone_ = 0;  // of that chunk, the event that the cursor is at included
    evtx::RecordPlace record_;     // that event
    std::shared_ptr<const evtx::Chunk> chunk_;

    RecordMemory memory_;  // of the event that is looked at
};

}  // namespace corvina::embedded
