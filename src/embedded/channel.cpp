#include "embedded/channel.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

#include "base/letter_case.h"
#include "base/parse_number.h"
#include "base/path_text.h"
#include "embedded/evtx/channel_file_name.h"

namespace corvina::embedded {
namespace {

constexpr std::array<std::pair<std::wstring_view, EVT_CHANNEL_TYPE>, 4> TypeNames{{
    {L"Admin", EvtChannelTypeAdmin},
    {L"Operational", EvtChannelTypeOperational},
    {L"Analytic", EvtChannelTypeAnalytic},
    {L"Debug", EvtChannelTypeDebug},
}};

// Above every real one, and far enough from the end of the numbers to be rounded up.
constexpr std::uint64_t HighestSize = 999'999'999'999'999'999;

void ApplyBoolean(const IniSection& section, std::wstring_view key, bool& value) {
    const std::wstring text = section.Find(key).value_or(std::wstring());
    const auto isOneOf = [&text](std::initializer_list<std::wstring_view> words) {
        return std::ranges::any_of(words, [&text](std::wstring_view word) { return EqualIgnoringCase(text, word); });
    };
    if (isOneOf({L"true", L"yes", L"1"})) {
        value = true;
    } else if (isOneOf({L"false", L"no", L"0"})) {
        value = false;
    }
}

std::optional<EVT_CHANNEL_TYPE> ParseType(std::wstring_view text) {
    for (std::size_t index = 0; index < TypeNames.size(); ++index) {
        if (EqualIgnoringCase(text, TypeNames[index].first) || ParseUnsigned(text) == index) {
            return TypeNames[index].second;
        }
    }
    return std::nullopt;
}

}  // namespace

Channel MakeChannel(std::wstring path, const std::filesystem::path& folder) {
    Channel channel;
    channel.FoldedPath = UpperCase(path);
    channel.File = folder / PathFromText(evtx::FileNameOfChannelPath(path));
    const std::size_t slash = path.rfind(L'/');
    if (slash == std::wstring::npos) {
        // The two logs without a kind that came with the present event log.
        channel.Classic = path != L"Setup" && path != L"ForwardedEvents";
    } else {
        channel.Type = ParseType(std::wstring_view(path).substr(slash + 1)).value_or(EvtChannelTypeOperational);
    }
    channel.Path = std::move(path);
    return channel;
}

void ApplySettings(const IniSection& section, Channel& channel) {
    ApplyBoolean(section, L"Enabled", channel.Enabled);
    ApplyBoolean(section, L"Classic", channel.Classic);
    ApplyBoolean(section, L"Retention", channel.Retention);
    ApplyBoolean(section, L"AutoBackup", channel.AutoBackup);
    if (const auto size = ParseUnsigned(section.Find(L"MaxSize").value_or(std::wstring()), HighestSize)) {
        channel.MaximumSize = *size;
    }
    if (const auto type = ParseType(section.Find(L"Type").value_or(std::wstring()))) {
        channel.Type = *type;
    }
    if (auto publisher = section.Find(L"Publisher")) {
        channel.OwningPublisher = std::move(*publisher);
    }
}

std::optional<std::wstring> ChannelPathOfFileName(std::wstring_view fileName) {
    if (fileName.size() <= evtx::LogExtension.size() ||
        !EqualIgnoringCase(fileName.substr(fileName.size() - evtx::LogExtension.size()), evtx::LogExtension)) {
        return std::nullopt;
    }
    std::wstring path(fileName.substr(0, fileName.size() - evtx::LogExtension.size()));
    for (std::size_t at = path.find(evtx::EncodedSlash); at != std::wstring::npos;
         at = path.find(evtx::EncodedSlash, at + 1)) {
        path.replace(at, evtx::EncodedSlash.size(), L"/");
    }
    return path;
}

}  // namespace corvina::embedded
