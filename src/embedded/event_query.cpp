#include "embedded/event_query.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace corvina::embedded {
namespace {

// Some 100 KB each.
constexpr std::size_t MostChunksHeld = 320;

}  // namespace

bool EventQuery::Earlier::operator()(const Head& left, const Head& right) const {
    const Head& first = NewestFirst ? right : left;
    const Head& second = NewestFirst ? left : right;
    return std::tie(first.Time, first.Log) < std::tie(second.Time, second.Log);
}

EventQuery::EventQuery(std::vector<Source> sources, std::vector<LogCursor> logs, bool newestFirst)
    : sources_(std::move(sources)),
      logs_(std::move(logs)),
      waiting_(Earlier{newestFirst}),
      holding_(Earlier{newestFirst}) {}

bool EventQuery::HasReadFailed() const {
    return std::any_of(logs_.begin(), logs_.end(), [](const LogCursor& log) { return log.HasReadFailed(); });
}

std::vector<std::wstring> EventQuery::Names() const {
    std::vector<std::wstring> names;
    names.reserve(sources_.size());
    for (const Source& source : sources_) {
        names.push_back(source.Name);
    }
    return names;
}

std::vector<std::uint32_t> EventQuery::Statuses() const {
    std::vector<std::uint32_t> statuses;
    statuses.reserve(sources_.size());
    for (const Source& source : sources_) {
        statuses.push_back(source.Status);
    }
    return statuses;
}

std::optional<EventQuery::Head> EventQuery::NextOf(std::size_t log) {
    LogCursor& cursor = logs_[log];
    return cursor.Next() ? std::optional<Head>(Head{cursor.Time(), log}) : std::nullopt;
}

// The log's chunk is held until those of too many nearer events are.
void EventQuery::Wait(const Head& head) {
    waiting_.insert(head);
    holding_.insert(head);
    if (holding_.size() > MostChunksHeld) {
        const auto farthest = std::prev(holding_.end());
        logs_[farthest->Log].LetGoOfChunk();
        holding_.erase(farthest);
    }
}

EventQuery::Head EventQuery::TakeFirst() {
    const Head first = waiting_.extract(waiting_.begin()).value();
    holding_.erase(first);
    return first;
}

void EventQuery::Start() {
    started_ = true;
    for (std::size_t log = 0; log < logs_.size(); ++log) {
        if (const std::optional<Head> head = NextOf(log)) {
            Wait(*head);
        }
    }
}

bool EventQuery::Next(EventPlace& place) {
    if (logs_.size() == 1) {
        while (logs_.front().Next()) {
            if (logs_.front().Get(place)) {
                return true;
            }
        }
        return false;
    }
    if (!started_) {
        Start();
    }
    for (;;) {
        // The log that gave the last event often has the next one as well.
        std::optional<Head> next = current_ ? NextOf(*current_) : std::nullopt;
        current_.reset();
        if (!next && waiting_.empty()) {
            return false;
        }
        if (!next || (!waiting_.empty() && waiting_.key_comp()(*waiting_.begin(), *next))) {
            const Head first = TakeFirst();
            if (next) {
                Wait(*next);
            }
            next = first;
        }
        current_ = next->Log;
        if (logs_[*current_].Get(place)) {
            return true;
        }
    }
}

}  // namespace corvina::embedded
