// The events of a query, in one direction: what EvtQuery gives out and what an export writes.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "embedded/log_cursor.h"

namespace corvina::embedded {

class EventQuery {
  public:
    // The events of one log. `name` is the channel or file as it was asked for.
    EventQuery(LogCursor log, std::wstring name);

    // Moves to the next event; false at the end.
    bool Next(EventPlace& place) { return log_.Next(place); }

    // The channels and files that were asked for, and for each 0 or the error that keeps it from being read.
    const std::vector<std::wstring>& Names() const { return names_; }
    const std::vector<std::uint32_t>& Statuses() const { return statuses_; }

  private:
    LogCursor log_;
    std::vector<std::wstring> names_;
    std::vector<std::uint32_t> statuses_;
};

}  // namespace corvina::embedded
