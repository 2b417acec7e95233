// A channel of a computer in the store: its file and what "channels.ini" says about it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "embedded/ini_file.h"
#include "platform/event_log_types.h"

namespace corvina::embedded {

// The longest channel path that the platform takes, in characters.
inline constexpr std::size_t MaximumChannelPathLength = 255;

// The largest maximum size that "channels.ini" can hold: more digits are not read.
inline constexpr std::uint64_t LargestMaximumSize = 900'000'000'000'000'000;

struct Channel {
    std::wstring Path;           // as it is shown: "Vendor-Product/Operational"
    std::wstring FoldedPath;     // Path without case, the key of look-ups
    std::filesystem::path File;  // where its log is, or would be
    bool HasFile = false;        // a channel without a file is an empty log
    bool Enabled = true;
    bool Classic = false;
    bool Retention = false;
    bool AutoBackup = false;
    std::uint64_t MaximumSize = 20971520;  // bytes; what the platform gives its larger logs
    EVT_CHANNEL_TYPE Type = EvtChannelTypeAdmin;
    std::wstring OwningPublisher;
};

// A channel with the defaults that follow from its path: its type from the part after "/", and whether it is classic
// (a log from before providers had manifests) from having no such part.
Channel MakeChannel(std::wstring path, const std::filesystem::path& folder);

// Takes over what a section of "channels.ini" gives: Enabled, Classic, Retention, AutoBackup (true, false, yes, no, 1,
// 0), MaxSize (bytes), Type (Admin, Operational, Analytic, Debug or its number) and Publisher. Other values are
// ignored.
void ApplySettings(const IniSection& section, Channel& channel);

// The channel behind a file name, none when the name does not end in ".evtx". Only "%4" is decoded, to "/": the
// platform writes nothing else so, and reading other digits as codes would turn "%4Admin" into a letter.
std::optional<std::wstring> ChannelPathOfFileName(std::wstring_view fileName);

}  // namespace corvina::embedded
