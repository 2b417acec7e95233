// The name of the file in which the platform keeps a channel: the channel's path with "/" written as "%4", and ".evtx".
#pragma once

#include <string>
#include <string_view>

namespace corvina::evtx {

inline constexpr std::wstring_view LogExtension = L".evtx";
inline constexpr std::wstring_view EncodedSlash = L"%4";

// "Vendor-Product/Kind" as "Vendor-Product%4Kind.evtx". A backslash is written like a slash, since it never separates
// folders in a channel's path, whoever wrote it.
std::wstring FileNameOfChannelPath(std::wstring_view channelPath);

}  // namespace corvina::evtx
