// Paths as the program's texts. The standard library's own conversions throw on names that are not in the expected
// encoding; these never fail.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace corvina {

std::wstring TextOfPath(const std::filesystem::path& path);

// Both "/" and "\" separate folders, on every system.
std::filesystem::path PathFromText(std::wstring_view text);

}  // namespace corvina
