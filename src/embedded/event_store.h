// The folders of a store: its computers, their accounts and their channels.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/channel.h"
#include "embedded/file_facts.h"

namespace corvina::embedded {

// A user name and a password, each none when it is not given.
struct Credentials {
    std::optional<std::wstring> User;
    std::optional<std::wstring> Password;
};

// One computer's folder. What it holds is read by Refresh; channels handed out stay valid after the next Refresh.
class ComputerFolder {
  public:
    explicit ComputerFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

    // Reads "channels.ini" and the names of the files. Returns 0, or error::AccessDenied when the folder cannot be
    // read; a "channels.ini" that cannot be read leaves the channels with their defaults.
    std::uint32_t Refresh();

    // Whether "account.ini" lets somebody in: 0, error::LogonFailure, or error::AccessDenied when that file is there
    // but cannot be read. User names are compared without case, passwords exactly.
    std::uint32_t CheckAccount(const Credentials& credentials) const;

    // Sorted by path without regard to case.
    const std::vector<std::shared_ptr<const Channel>>& Channels() const { return channels_; }

    // By path, without regard to case; none when there is no such channel. Files that appeared and settings that
    // changed since the last Refresh are noticed.
    std::shared_ptr<const Channel> FindChannel(std::wstring_view path);

    // The same among those that the last Refresh found.
    std::shared_ptr<const Channel> KnownChannel(std::wstring_view path) const;

    // Writes values of a channel into "channels.ini" and reads the channels anew. Returns 0 or an error code as
    // ChangeIniFile does.
    std::uint32_t SaveSettings(const Channel& channel, std::span<const IniEntry> entries);

    std::filesystem::path PublishersFolder() const { return folder_ / "publishers"; }

  private:
    std::filesystem::path SettingsFile() const { return folder_ / "channels.ini"; }

    std::filesystem::path folder_;
    std::vector<std::shared_ptr<const Channel>> channels_;
    std::optional<FileFacts> settingsFacts_;  // of "channels.ini" when it was read
};

class EventStore {
  public:
    EventStore(std::filesystem::path folder, std::wstring localComputerName)
        : folder_(std::move(folder)), localComputerName_(std::move(localComputerName)) {}

    // Opens a computer by name, compared without case, and reads its folder. This computer is "", ".", "localhost" and
    // its own name. On failure returns none and error::RpcServerUnavailable for a computer that the store does not
    // have, error::LogonFailure for wrong or missing credentials, error::AccessDenied for a folder that cannot be read.
    std::shared_ptr<ComputerFolder> OpenComputer(std::wstring_view name, const Credentials& credentials,
                                                 std::uint32_t& error);

  private:
    bool IsLocal(std::wstring_view name) const;
    std::optional<std::filesystem::path> FindFolder(std::wstring_view name) const;

    std::filesystem::path folder_;
    std::wstring localComputerName_;
};

// Whether a folder directly holds at least one file whose name is that of a log.
bool HoldsLogFiles(const std::filesystem::path& folder);

}  // namespace corvina::embedded
