#include "embedded/event_store.h"

#include <algorithm>
#include <system_error>

#include "base/letter_case.h"
#include "base/path_text.h"
#include "embedded/ini_changes.h"
#include "platform/error_codes.h"

namespace corvina::embedded {
namespace {

namespace fs = std::filesystem;

// The entries of a folder in the order of their names, so that the result is the same on every file system.
std::vector<fs::path> EntriesOf(const fs::path& folder, bool& readable) {
    std::vector<fs::path> entries;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    while (!error && entry != fs::directory_iterator()) {
        entries.push_back(entry->path());
        entry.increment(error);
    }
    readable = !error;
    std::sort(entries.begin(), entries.end());
    return entries;
}

using ChannelsByPath = std::map<std::wstring, std::shared_ptr<Channel>>;

Channel& AddChannel(ChannelsByPath& channels, std::wstring path, const fs::path& folder) {
    std::shared_ptr<Channel>& place = channels[UpperCase(path)];
    if (place == nullptr) {
        place = std::make_shared<Channel>(MakeChannel(std::move(path), folder));
    }
    return *place;
}

void AddFiles(const std::vector<fs::path>& entries, const fs::path& folder, ChannelsByPath& channels) {
    for (const fs::path& entry : entries) {
        auto path = ChannelPathOfFileName(TextOfPath(entry.filename()));
        std::error_code error;
        if (!path || fs::is_directory(entry, error)) {
            continue;
        }
        Channel& channel = AddChannel(channels, std::move(*path), folder);
        if (!channel.HasFile) {
            channel.File = entry;
            channel.HasFile = true;
        }
    }
}

}  // namespace

std::uint32_t ComputerFolder::Refresh() {
    bool readable = false;
    const std::vector<fs::path> entries = EntriesOf(folder_, readable);
    if (!readable) {
        return error::AccessDenied;
    }
    ChannelsByPath channels;
    AddFiles(entries, folder_, channels);
    std::uint32_t ignored = 0;
    settingsFacts_ = ReadFileFacts(SettingsFile());
    for (const IniSection& section : ReadIniFile(SettingsFile(), ignored)) {
        if (!section.Name.empty() && section.Name.size() <= MaximumChannelPathLength) {
            ApplySettings(section, AddChannel(channels, section.Name, folder_));
        }
    }
    channels_.clear();
    channels_.reserve(channels.size());
    for (auto& [path, channel] : channels) {
        channels_.push_back(std::move(channel));
    }
    return error::Success;
}

std::uint32_t ComputerFolder::CheckAccount(const Credentials& credentials) const {
    std::uint32_t error = error::Success;
    const std::vector<IniSection> sections = ReadIniFile(folder_ / "account.ini", error);
    if (error != error::Success) {
        return error::AccessDenied;
    }
    for (const IniSection& section : sections) {
        if (!EqualIgnoringCase(section.Name, L"Account")) {
            continue;
        }
        const auto user = section.Find(L"User");
        const auto password = section.Find(L"Password");
        if ((user && !EqualIgnoringCase(*user, credentials.User.value_or(std::wstring()))) ||
            (password && *password != credentials.Password.value_or(std::wstring()))) {
            return error::LogonFailure;
        }
    }
    return error::Success;
}

std::shared_ptr<const Channel> ComputerFolder::KnownChannel(std::wstring_view path) const {
    const std::wstring folded = UpperCase(path);
    const auto place = std::lower_bound(channels_.begin(), channels_.end(), folded,
                                        [](const std::shared_ptr<const Channel>& channel, const std::wstring& key) {
                                            return channel->FoldedPath < key;
                                        });
    return place != channels_.end() && (*place)->FoldedPath == folded ? *place : nullptr;
}

std::shared_ptr<const Channel> ComputerFolder::FindChannel(std::wstring_view path) {
    std::shared_ptr<const Channel> channel = KnownChannel(path);
    std::error_code error;
    const bool outdated = channel == nullptr || channel->HasFile != fs::exists(channel->File, error) ||
                          !IsUnchanged(settingsFacts_, ReadFileFacts(SettingsFile()));
    return outdated && Refresh() == error::Success ? KnownChannel(path) : channel;
}

std::uint32_t ComputerFolder::SaveSettings(const Channel& channel, std::span<const IniEntry> entries) {
    const std::uint32_t error = ChangeIniFile(SettingsFile(), channel.Path, entries);
    return error != error::Success ? error : Refresh();
}

bool EventStore::IsLocal(std::wstring_view name) const {
    return name.empty() || name == L"." || EqualIgnoringCase(name, L"localhost") ||
           EqualIgnoringCase(name, localComputerName_);
}

std::optional<fs::path> EventStore::FindFolder(std::wstring_view name) const {
    bool readable = false;
    for (const fs::path& entry : EntriesOf(folder_, readable)) {
        std::error_code error;
        // A link that leads nowhere is a computer that refuses, not one that is unknown.
        const bool isFolder = fs::is_directory(entry, error) || fs::is_symlink(entry, error);
        if (isFolder && EqualIgnoringCase(TextOfPath(entry.filename()), name)) {
            return entry;
        }
    }
    return std::nullopt;
}

std::shared_ptr<ComputerFolder> EventStore::OpenComputer(std::wstring_view name, const Credentials& credentials,
                                                         std::uint32_t& error) {
    std::optional<fs::path> folder;
    if (HoldsLogFiles(folder_)) {
        if (IsLocal(name)) {
            folder = folder_;
        }
    } else {
        folder = FindFolder(IsLocal(name) ? std::wstring_view(L"localhost") : name);
    }
    if (!folder) {
        error = error::RpcServerUnavailable;
        return nullptr;
    }
    auto computer = std::make_shared<ComputerFolder>(std::move(*folder));
    error = computer->CheckAccount(credentials);
    if (error == error::Success) {
        error = computer->Refresh();
    }
    return error == error::Success ? computer : nullptr;
}

bool HoldsLogFiles(const fs::path& folder) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    while (!error && entry != fs::directory_iterator()) {
        std::error_code ignored;
        if (ChannelPathOfFileName(TextOfPath(entry->path().filename())) && !entry->is_directory(ignored)) {
            return true;
        }
        entry.increment(error);
    }
    return false;
}

}  // namespace corvina::embedded
