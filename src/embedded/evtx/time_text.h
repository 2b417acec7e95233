// Points in time in the forms that events write them in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace corvina::evtx {

inline constexpr std::size_t SystemTimeSize = 16;

// Reads "2024-03-05T13:07:09.1234567Z" as a file time, UTC. There may be any number of decimals or none, of which seven
// count, and the "Z" may be missing. None when the text is anything else or there is no such time.
std::optional<std::uint64_t> FileTimeFromText(std::wstring_view text);

// From at least SystemTimeSize bytes: year, month, day of the week, day, hour, minute, second, milliseconds, 16 bits
// each. None when there is no such time.
std::optional<std::uint64_t> FileTimeFromSystemTime(std::span<const std::byte> bytes);

}  // namespace corvina::evtx
