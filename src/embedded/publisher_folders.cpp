#include "embedded/publisher_folders.h"

#include <algorithm>
#include <system_error>

#include "embedded/fold_case.h"

namespace corvina::embedded {
namespace {

// More folders than a session meets; when they are exceeded all are forgotten and read again when asked for.
constexpr std::size_t MaximumFolders = 64;

}  // namespace

publisher::PublisherFolder* PublisherFolders::Open(const std::filesystem::path& folder) {
    std::error_code error;
    const auto time = std::filesystem::last_write_time(folder, error);
    if (error) {
        return nullptr;
    }
    const auto known = entries_.find(folder);
    if (known != entries_.end() && known->second.Time == time) {
        return known->second.Folder.get();
    }
    if (entries_.size() >= MaximumFolders) {
        entries_.clear();
    }
    Entry& entry = entries_[folder];
    entry = {time, std::make_unique<publisher::PublisherFolder>(folder)};
    return entry.Folder.get();
}

std::shared_ptr<const publisher::Publisher> PublisherFolders::Find(const std::filesystem::path& folder,
                                                                   std::wstring_view name) {
    publisher::PublisherFolder* const manifests = Open(folder);
    return manifests == nullptr ? nullptr : manifests->Find(name);
}

std::vector<std::wstring> PublisherFolders::Names(const std::filesystem::path& folder) {
    publisher::PublisherFolder* const manifests = Open(folder);
    return manifests == nullptr ? std::vector<std::wstring>() : manifests->Names();
}

std::vector<std::wstring> PublisherFolders::PublishersOfChannel(const std::filesystem::path& folder,
                                                                std::wstring_view channelPath) {
    std::vector<std::wstring> result;
    publisher::PublisherFolder* const manifests = Open(folder);
    if (manifests == nullptr) {
        return result;
    }
    for (std::wstring& name : manifests->Names()) {
        const auto publisher = manifests->Find(name);
        const bool writes = publisher != nullptr && std::any_of(publisher->Channels.begin(), publisher->Channels.end(),
                                                                [&](const auto& channel) {
                                                                    return EqualWithoutCase(channel.Path, channelPath);
                                                                });
        if (writes) {
            result.push_back(std::move(name));
        }
    }
    return result;
}

}  // namespace corvina::embedded
