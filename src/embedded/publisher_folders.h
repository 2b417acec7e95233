// The manifests of several folders, each folder read once for as long as it does not change.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string_view>

#include "embedded/publisher/publisher_manifest.h"

namespace corvina::embedded {

class PublisherFolders {
  public:
    // The provider of that name in a folder; none when the folder or the provider is not there.
    std::shared_ptr<const publisher::Publisher> Find(const std::filesystem::path& folder, std::wstring_view name);

    // The names of all providers in a folder, sorted.
    std::vector<std::wstring> Names(const std::filesystem::path& folder);

    // The names of the providers whose manifests write to a channel, sorted.
    std::vector<std::wstring> PublishersOfChannel(const std::filesystem::path& folder, std::wstring_view channelPath);

  private:
    struct Entry {
        std::filesystem::file_time_type Time;
        std::unique_ptr<publisher::PublisherFolder> Folder;
    };

    publisher::PublisherFolder* Open(const std::filesystem::path& folder);

    std::map<std::filesystem::path, Entry> entries_;
};

}  // namespace corvina::embedded
