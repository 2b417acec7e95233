// The providers of several folders, each folder read once for as long as it does not change. A file "publishers.ini" in
// it may say what the computer's registry knew of its providers: a section for each one, named after it, with any of
// the keys "Guid", "File" (the program file with its lists of levels, tasks, events), "MessageFile" (those with its
// texts, with semicolons between them) and "ParameterFile" (for texts like "%%1842" in events' values).
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string_view>

#include "embedded/publisher/publisher_folder.h"

namespace corvina::embedded {

class PublisherFolders {
  public:
    // The provider of that name in a folder, with its GUID where that is known; none when the folder or the provider is
    // not there.
    std::shared_ptr<const publisher::Publisher> Find(const std::filesystem::path& folder, std::wstring_view name,
                                                     const std::optional<GuidBytes>& guid);

    // The names of all providers in a folder, sorted.
    std::vector<std::wstring> Names(const std::filesystem::path& folder);

    // The names of the providers that write to a channel, sorted.
    std::vector<std::wstring> PublishersOfChannel(const std::filesystem::path& folder, std::wstring_view channelPath);

  private:
    struct Entry {
        std::filesystem::file_time_type Time;
        std::filesystem::file_time_type RegistryTime;
        std::unique_ptr<publisher::PublisherFolder> Folder;
        // By path without regard to case, the names sorted; made when somebody asks.
        std::optional<std::map<std::wstring, std::vector<std::wstring>>> NamesByChannel;
    };

    Entry* Open(const std::filesystem::path& folder);

    std::map<std::filesystem::path, Entry> entries_;
};

}  // namespace corvina::embedded
