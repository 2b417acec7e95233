#include "embedded/xpath/selection.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace corvina::xpath {

void Selection::FilterSet::Add(Member member) {
    if (member.Condition->MatchesNothing()) {
        return;
    }
    if (const std::optional<std::uint64_t> recordId = member.Condition->RecordId()) {
        pinned_.emplace(*recordId, std::move(member));
    } else {
        open_.push_back(std::move(member));
    }
}

bool Selection::FilterSet::MayMatch(std::uint64_t firstRecordId, std::uint64_t lastRecordId) const {
    const auto place = pinned_.lower_bound(firstRecordId);
    return !open_.empty() || (place != pinned_.end() && place->first <= lastRecordId);
}

std::optional<std::pair<std::uint64_t, std::uint64_t>> Selection::FilterSet::RecordIds() const {
    if (!open_.empty() || pinned_.empty()) {
        return std::nullopt;
    }
    return std::pair(pinned_.begin()->first, pinned_.rbegin()->first);
}

template <typename Use>
bool Selection::FilterSet::AnyOf(EventValues& event, Use use) const {
    if (std::any_of(open_.begin(), open_.end(), use)) {
        return true;
    }
    const std::optional<std::uint64_t> recordId = pinned_.empty() ? std::nullopt : RecordIdOf(event);
    if (!recordId) {
        return false;
    }
    const auto [first, last] = pinned_.equal_range(*recordId);
    return std::any_of(first, last, [&use](const auto& entry) { return use(entry.second); });
}

void Selection::Select(std::size_t query, std::shared_ptr<const Filter> filter) {
    selected_.Add({query, std::move(filter)});
}

void Selection::Suppress(std::size_t query, std::shared_ptr<const Filter> filter) {
    suppressed_[query].Add({query, std::move(filter)});
}

bool Selection::MatchesEverything() const {
    return std::any_of(selected_.Open().begin(), selected_.Open().end(), [this](const Member& member) {
        return member.Condition->MatchesEverything() && !suppressed_.contains(member.Query);
    });
}

bool Selection::IsSuppressed(std::size_t query, EventValues& event) const {
    const auto suppressed = suppressed_.find(query);
    return suppressed != suppressed_.end() &&
           suppressed->second.AnyOf(event, [&event](const Member& member) { return member.Condition->Matches(event); });
}

bool Selection::Matches(EventValues& event) const {
    // A query with many filters would otherwise ask all that it suppresses for each of them.
    std::optional<std::size_t> suppressing;
    return selected_.AnyOf(event, [&](const Member& member) {
        if (member.Query == suppressing || !member.Condition->Matches(event)) {
            return false;
        }
        if (!IsSuppressed(member.Query, event)) {
            return true;
        }
        suppressing = member.Query;
        return false;
    });
}

}  // namespace corvina::xpath
