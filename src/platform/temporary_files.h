// What a system does for the temporary file behind a ReplacingFile. Which name it gets is decided once for all systems,
// by CreateReplacingFile.
#pragma once

#include "platform/replacing_file.h"

namespace corvina {

// The names that are tried one after the other.
inline constexpr int TemporaryNameAttempts = 100;
std::filesystem::path TemporaryNameOf(const std::filesystem::path& target, int attempt);

// What stands in the way of the target now, before anything is written: 0 or an error code.
std::uint32_t CheckTarget(const std::filesystem::path& target, ExistingFile existing);

// Creates the file, which must not exist. On failure gives none and an error code; error::FileExists means that another
// name may do.
std::unique_ptr<ReplacingFile> CreateTemporaryFile(const std::filesystem::path& temporary,
                                                   const std::filesystem::path& target, ExistingFile existing,
                                                   std::uint32_t& error);

// Removes a temporary file whose process has ended; says whether there was such a one.
bool RemoveIfAbandoned(const std::filesystem::path& temporary);

}  // namespace corvina
