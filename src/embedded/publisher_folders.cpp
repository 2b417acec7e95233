#include "embedded/publisher_folders.h"

#include <system_error>

#include "base/letter_case.h"
#include "embedded/ini_file.h"

namespace corvina::embedded {
namespace {

// More folders than a session meets; when they are exceeded all are forgotten and read again when asked for.
constexpr std::size_t MaximumFolders = 64;

// A file that cannot be read registers nobody.
std::vector<publisher::RegisteredPublisher> ReadRegistered(const std::filesystem::path& file) {
    std::vector<publisher::RegisteredPublisher> registered;
    std::uint32_t error = 0;
    for (const IniSection& section : ReadIniFile(file, error)) {
        publisher::RegisteredPublisher& publisher = registered.emplace_back();
        publisher.Name = section.Name;
        publisher.Guid = ParseGuid(section.Find(L"Guid").value_or(std::wstring()));
        publisher.ResourceFile = section.Find(L"File").value_or(std::wstring());
        publisher.MessageFiles = section.Find(L"MessageFile").value_or(std::wstring());
        publisher.ParameterFile = section.Find(L"ParameterFile").value_or(std::wstring());
    }
    return registered;
}

}  // namespace

// Reads a folder anew when its list of files or "publishers.ini" has changed. New files in the language folders below
// it go unnoticed.
PublisherFolders::Entry* PublisherFolders::Open(const std::filesystem::path& folder) {
    std::error_code error;
    const auto time = std::filesystem::last_write_time(folder, error);
    if (error) {
        return nullptr;
    }
    // Writing into a file does not change its folder.
    std::error_code noFile;
    const std::filesystem::path registryFile = folder / "publishers.ini";
    const auto registryTime = std::filesystem::last_write_time(registryFile, noFile);
    const auto known = entries_.find(folder);
    if (known != entries_.end() && known->second.Time == time && known->second.RegistryTime == registryTime) {
        return &known->second;
    }
    if (entries_.size() >= MaximumFolders) {
        entries_.clear();
    }
    Entry& entry = entries_[folder];
    entry = {
        time, registryTime, std::make_unique<publisher::PublisherFolder>(folder, ReadRegistered(registryFile)), {}};
    return &entry;
}

std::shared_ptr<const publisher::Publisher> PublisherFolders::Find(const std::filesystem::path& folder,
                                                                   std::wstring_view name,
                                                                   const std::optional<GuidBytes>& guid) {
    Entry* const entry = Open(folder);
    return entry == nullptr ? nullptr : entry->Folder->Find(name, guid);
}

std::vector<std::wstring> PublisherFolders::Names(const std::filesystem::path& folder) {
    Entry* const entry = Open(folder);
    return entry == nullptr ? std::vector<std::wstring>() : entry->Folder->Names();
}

std::vector<std::wstring> PublisherFolders::PublishersOfChannel(const std::filesystem::path& folder,
                                                                std::wstring_view channelPath) {
    Entry* const entry = Open(folder);
    if (entry == nullptr) {
        return {};
    }
    if (!entry->NamesByChannel) {
        // All channels at once: each provider has to be opened to know its channels.
        entry->NamesByChannel.emplace();
        for (const std::wstring& name : entry->Folder->Names()) {
            const std::shared_ptr<const publisher::Publisher> publisher = entry->Folder->Find(name);
            if (publisher == nullptr) {
                continue;
            }
            for (const publisher::ChannelReference& channel : publisher->Channels) {
                std::vector<std::wstring>& names = (*entry->NamesByChannel)[UpperCase(channel.Path)];
                if (names.empty() || names.back() != name) {
                    names.push_back(name);
                }
            }
        }
    }
    const auto found = entry->NamesByChannel->find(UpperCase(channelPath));
    return found == entry->NamesByChannel->end() ? std::vector<std::wstring>() : found->second;
}

}  // namespace corvina::embedded
