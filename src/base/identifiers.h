// GUIDs and security identifiers as text.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace corvina {

// The 16 bytes of a GUID as they stand in memory and in files (first three fields little-endian).
using GuidBytes = std::array<std::byte, 16>;

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", upper case as StringFromGUID2 writes it.
std::wstring GuidText(const GuidBytes& guid);

// Reads a GUID with or without braces, in any case.
std::optional<GuidBytes> ParseGuid(std::wstring_view text);

// Length in bytes of the security identifier at the front of `bytes`, 0 when it is not a valid one (revision 1, at most
// 15 sub-authorities, all of them inside `bytes`).
std::size_t SidLength(std::span<const std::byte> bytes);

// "S-1-5-18"; none when the identifier is invalid. Authorities of 2^32 and above are written as "0x" and 12 digits.
std::optional<std::wstring> SidText(std::span<const std::byte> sid);

// Reads "S-1-5-18" into its binary form.
std::optional<std::basic_string<std::byte>> ParseSid(std::wstring_view text);

}  // namespace corvina
