// What is taken of one log: the events that one of several queries selects and that the same query does not suppress.
//
// A query document may select thousands of events one by one, by their record ids. Filters that pin a record id are
// found by it, so that an event is tried only against those that can mean it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "embedded/xpath/filter.h"

namespace corvina::xpath {

class Selection {
  public:
    // `query` is any number that tells the queries apart; the filters of one query are added one after another.
    void Select(std::size_t query, std::shared_ptr<const Filter> filter);
    void Suppress(std::size_t query, std::shared_ptr<const Filter> filter);

    // Known without looking at any event.
    bool MatchesNothing() const { return selected_.IsEmpty(); }
    bool MatchesEverything() const;

    // The smallest and the largest record id that an event can have that matches; none when it can have any.
    std::optional<std::pair<std::uint64_t, std::uint64_t>> RecordIds() const { return selected_.RecordIds(); }

    // Whether an event with a record id from `first` to `last` can match.
    bool MayMatchRecordIds(std::uint64_t first, std::uint64_t last) const { return selected_.MayMatch(first, last); }

    bool Matches(EventValues& event) const;

  private:
    struct Member {
        std::size_t Query = 0;
        std::shared_ptr<const Filter> Condition;
    };

    class FilterSet {
      public:
        void Add(Member member);
        bool IsEmpty() const { return open_.empty() && pinned_.empty(); }
        bool MayMatch(std::uint64_t firstRecordId, std::uint64_t lastRecordId) const;
        std::optional<std::pair<std::uint64_t, std::uint64_t>> RecordIds() const;
        const std::vector<Member>& Open() const { return open_; }

        // Calls `use` with each filter that can match the event until it says true; whether it did.
        template <typename Use>
        bool AnyOf(EventValues& event, Use use) const;

      private:
        std::vector<Member> open_;  // those that pin no record id
        std::multimap<std::uint64_t, Member> pinned_;
    };

    bool IsSuppressed(std::size_t query, EventValues& event) const;

    FilterSet selected_;
    std::map<std::size_t, FilterSet> suppressed_;  // by query
};

}  // namespace corvina::xpath
