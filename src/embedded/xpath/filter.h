// Filters over events: the text of a query, compiled once, then asked for each event. A filter asks an event only for
// the parts that it needs to decide, and says beforehand what it knows about the answer, so that a search need not read
// a whole log.
//
// The language is the event log's subset of XPath 1.0; filter_parser.h says what is in it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "embedded/xpath/event_values.h"
#include "embedded/xpath/expression.h"
#include "embedded/xpath/system_filter.h"

namespace corvina::xpath {

class Filter {
  public:
    // Compiles a filter; none when the text is not one. An empty text stands for "*". `now` is the time that the ages
    // of events are counted up to: a file time, UTC.
    static std::unique_ptr<const Filter> Parse(std::wstring_view text, std::uint64_t now);

    bool MatchesEverything() const { return matchesEverything_; }

    // Known without looking at any event, as for a negative record id.
    bool MatchesNothing() const { return system_.IsNever(); }

    // The only record id that an event in the result can have.
    std::optional<std::uint64_t> RecordId() const { return system_.RecordId(); }

    // Whether the event is in the result. Its System values are asked first, its tree when they leave the answer open.
    bool Matches(EventValues& event) const;

    // The same answer, from the tree alone.
    bool MatchesTree(const evtx::EventTree& tree) const;

  private:
    explicit Filter(Expression expression);

    Expression expression_;
    SystemFilter system_;
    bool matchesEverything_;
};

}  // namespace corvina::xpath
