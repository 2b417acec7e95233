// Changing single values of a settings file of a store while everything else in it stays as it was written.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "embedded/ini_file.h"

namespace corvina::embedded {

// The text with new values of some keys of a section. The line that decides about a key is changed where it stands; new
// keys are added at the end of the section, which is added at the end of the text when there is none of that name. All
// other lines, comments among them, stay as they are, whatever is in them.
std::string ChangedIni(std::string_view utf8, std::wstring_view section, std::span<const IniEntry> entries);

// Changes a file in that way; it is replaced as a whole, or made when it does not exist. Returns 0, the system's error
// code, error::InvalidData when the file is not UTF-8 text or would become too large to be read, or
// error::InvalidParameter when the section cannot be written so that it is read back under its name.
std::uint32_t ChangeIniFile(const std::filesystem::path& path, std::wstring_view section,
                            std::span<const IniEntry> entries);

}  // namespace corvina::embedded
