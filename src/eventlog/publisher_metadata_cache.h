// The publishers' metadata that a load has opened: one handle per publisher name, shared by all rows of the load.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/event_log_api.h"
#include "platform/evt_handle.h"

namespace corvina {

class PublisherMetadataCache {
  public:
    explicit PublisherMetadataCache(EventLogApi& api) : api_(api) {}
    ~PublisherMetadataCache() { Clear(); }
    PublisherMetadataCache(const PublisherMetadataCache&) = delete;
    PublisherMetadataCache& operator=(const PublisherMetadataCache&) = delete;

    // The handle of the first entry with exactly this name; null when there is none or its metadata could not be
    // opened.
    EVT_HANDLE Find(std::wstring_view publisher) const;

    // The same, but a name that is not listed yet is opened now and listed, also when that fails, so that a publisher
    // without metadata is asked for only once. `logFilePath` may be null.
    EVT_HANDLE FindOrOpen(EVT_HANDLE session, std::wstring_view publisher, const wchar_t* logFilePath);

    std::size_t Size() const { return entries_.size(); }

    // Closes all handles, the last opened one first.
    void Clear();

  private:
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view name) const { return std::hash<std::wstring_view>{}(name); }
    };

    EventLogApi& api_;
    std::vector<std::pair<std::wstring, EvtHandle>> entries_;
    std::unordered_map<std::wstring, std::size_t, NameHash, std::equal_to<>> places_;
};

}  // namespace corvina
