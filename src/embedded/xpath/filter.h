// Filters over events: the text of a query, compiled once, then asked for each event. A filter asks an event only for
// the parts that it names, and says beforehand what it knows about the answer, so that a search need not read a whole
// log.
//
// Understood are "*" and the look-up of one event by its record id, "Event/System[EventRecordID=7]".
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "embedded/evtx/system_values.h"

namespace corvina::xpath {

// The event that a filter is asked about. Parts are decoded when they are asked for; none when that fails.
class EventValues {
  public:
    virtual ~EventValues() = default;
    virtual const evtx::SystemValues* System() = 0;
    virtual const std::vector<evtx::DataValue>* Data() = 0;
};

class Filter {
  public:
    // Compiles a filter; none when the text is not one. An empty text stands for "*". `now` is the time that the ages
    // of events are counted up to: a file time, UTC.
    static std::unique_ptr<const Filter> Parse(std::wstring_view text, std::uint64_t now);

    bool MatchesEverything() const { return kind_ == Kind::Everything; }

    // Known without looking at any event, as for a negative record id.
    bool MatchesNothing() const { return kind_ == Kind::Nothing; }

    // The only record id that an event in the result can have.
    std::optional<std::uint64_t> RecordId() const {
        return kind_ == Kind::RecordId ? std::optional(recordId_) : std::nullopt;
    }

    bool Matches(EventValues& event) const;

  private:
    enum class Kind { Everything, Nothing, RecordId };

    Filter(Kind kind, std::uint64_t recordId) : kind_(kind), recordId_(recordId) {}

    Kind kind_;
    std::uint64_t recordId_;
};

}  // namespace corvina::xpath
