// The operating system's error codes that the program knows by name. Values are the published ones.
#pragma once

#include <cstdint>

namespace corvina::error {

inline constexpr std::uint32_t Success = 0;
inline constexpr std::uint32_t FileNotFound = 2;
inline constexpr std::uint32_t PathNotFound = 3;
inline constexpr std::uint32_t AccessDenied = 5;
inline constexpr std::uint32_t InvalidHandle = 6;
inline constexpr std::uint32_t InvalidData = 13;
inline constexpr std::uint32_t OutOfMemory = 14;
inline constexpr std::uint32_t NotSupported = 50;
inline constexpr std::uint32_t FileExists = 80;
inline constexpr std::uint32_t InvalidParameter = 87;
inline constexpr std::uint32_t DiskFull = 112;
inline constexpr std::uint32_t CallNotImplemented = 120;
inline constexpr std::uint32_t InsufficientBuffer = 122;
inline constexpr std::uint32_t FileNameTooLong = 206;
inline constexpr std::uint32_t NoMoreItems = 259;
inline constexpr std::uint32_t DeviceError = 1117;
inline constexpr std::uint32_t NotAllAssigned = 1300;
inline constexpr std::uint32_t LogonFailure = 1326;
inline constexpr std::uint32_t EventLogFileCorrupt = 1500;
inline constexpr std::uint32_t RpcServerUnavailable = 1722;
inline constexpr std::uint32_t InvalidQuery = 15001;
inline constexpr std::uint32_t PublisherMetadataNotFound = 15002;
inline constexpr std::uint32_t InvalidChannelPath = 15005;
inline constexpr std::uint32_t ChannelNotFound = 15007;
inline constexpr std::uint32_t MessageNotFound = 15027;
inline constexpr std::uint32_t MessageIdNotFound = 15028;
inline constexpr std::uint32_t UnresolvedValueInsert = 15029;

}  // namespace corvina::error
