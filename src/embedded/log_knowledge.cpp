#include "embedded/log_knowledge.h"

#include <utility>

namespace corvina::embedded {
namespace {

// Some 60 bytes a chunk: the chunks of 16 GB of logs.
constexpr std::size_t MostChunks = 262'144;
constexpr std::size_t MostLogs = 2000;

}  // namespace

std::optional<LogKnowledge> KnownLogs::Find(const std::filesystem::path& path, const FileFacts& facts) {
    const auto place = places_.find(path);
    if (place == places_.end()) {
        return std::nullopt;
    }
    if (!IsUnchanged(place->second->Knowledge.Facts, facts)) {
        Forget(place->second);
        return std::nullopt;
    }
    entries_.splice(entries_.begin(), entries_, place->second);
    return entries_.front().Knowledge;
}

// One log is always kept, whatever its length: it is in use.
void KnownLogs::Keep(const std::filesystem::path& path, LogKnowledge knowledge) {
    if (const auto place = places_.find(path); place != places_.end()) {
        Forget(place->second);
    }
    chunks_ += knowledge.Layout->Chunks.size();
    entries_.push_front({path, std::move(knowledge)});
    places_[path] = entries_.begin();
    while (entries_.size() > 1 && (chunks_ > MostChunks || entries_.size() > MostLogs)) {
        Forget(std::prev(entries_.end()));
    }
}

void KnownLogs::Forget(Entries::iterator entry) {
    chunks_ -= entry->Knowledge.Layout->Chunks.size();
    places_.erase(entry->Path);
    entries_.erase(entry);
}

}  // namespace corvina::embedded
