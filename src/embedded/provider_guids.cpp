#include "embedded/provider_guids.h"

namespace corvina::embedded {
namespace {

// Windows has some 1,200 providers. When there are more, all are forgotten, and learned again from the next events.
constexpr std::size_t MostProviders = 4'096;
constexpr std::size_t LongestName = 256;

}  // namespace

void ProviderGuids::Note(const evtx::SystemValues& event) {
    if (!event.ProviderGuid || event.ProviderName.empty() || event.ProviderName.size() > LongestName) {
        return;
    }
    if (const auto known = guids_.find(event.ProviderName); known != guids_.end()) {
        known->second = *event.ProviderGuid;
        return;
    }
    if (guids_.size() >= MostProviders) {
        guids_.clear();
    }
    guids_.emplace(event.ProviderName, *event.ProviderGuid);
}

std::optional<GuidBytes> ProviderGuids::Find(const std::wstring& name) const {
    const auto found = guids_.find(name);
    return found == guids_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace corvina::embedded
