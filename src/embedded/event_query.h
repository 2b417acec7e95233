// The events of a query over any number of logs, in one direction: what EvtQuery gives out and what an export writes.
//
// Several logs are merged by the time at which their events were created, while each keeps its own order: a log whose
// clock was set back is followed as it was written. Events of the same time come in the order of the logs, or in the
// opposite one when the newest come first.
//
// Memory does not grow with the result, and little with the number of logs: of the chunks that their next events are
// in, only the nearest are held.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "embedded/log_cursor.h"

namespace corvina::embedded {

class EventQuery {
  public:
    // What was asked for, as EvtGetQueryInfo tells it: each channel or file, and 0 or the error that keeps it from
    // being read.
    struct Source {
        std::wstring Name;
        std::uint32_t Status = 0;
    };

    // The cursors stand before their first events and walk in the direction that is given here again.
    EventQuery(std::vector<Source> sources, std::vector<LogCursor> logs, bool newestFirst);

    // Moves to the next event; false at the end.
    bool Next(EventPlace& place);

    // Whether a part of a log could not be read so far, so that events are missing.
    bool HasReadFailed() const;

    std::vector<std::wstring> Names() const;
    std::vector<std::uint32_t> Statuses() const;

  private:
    // The next event of a log.
    struct Head {
        std::uint64_t Time = 0;
        std::size_t Log = 0;
    };
    struct Earlier {
        bool NewestFirst = false;
        bool operator()(const Head& left, const Head& right) const;
    };
    using Heads = std::set<Head, Earlier>;

    void Start();
    std::optional<Head> NextOf(std::size_t log);
    void Wait(const Head& head);
    Head TakeFirst();

    std::vector<Source> sources_;
    std::vector<LogCursor> logs_;
    bool started_ = false;
    std::optional<std::size_t> current_;  // the log of the event that was given out last
    Heads waiting_;
    Heads holding_;  // those of them whose chunk is held
};

}  // namespace corvina::embedded
