#include "eventlog/publisher_metadata_cache.h"

namespace corvina {

EVT_HANDLE PublisherMetadataCache::Find(std::wstring_view publisher) const {
    const auto place = places_.find(publisher);
    return place == places_.end() ? nullptr : entries_[place->second].second.Get();
}

EVT_HANDLE PublisherMetadataCache::FindOrOpen(EVT_HANDLE session, std::wstring_view publisher,
                                              const wchar_t* logFilePath) {
    const auto place = places_.find(publisher);
    if (place != places_.end()) {
        return entries_[place->second].second.Get();
    }
    std::wstring name(publisher);
    EvtHandle metadata(api_, api_.EvtOpenPublisherMetadata(session, name.c_str(), logFilePath, 0, 0));
    entries_.emplace_back(name, std::move(metadata));
    places_.emplace(std::move(name), entries_.size() - 1);
    return entries_.back().second.Get();
}

void PublisherMetadataCache::Clear() {
    places_.clear();
    while (!entries_.empty()) {
        entries_.pop_back();
    }
}

}  // namespace corvina
