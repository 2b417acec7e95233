// What the file system says about a file, in the platform's units.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace corvina::embedded {

struct FileFacts {
    std::uint64_t Size = 0;          // bytes
    std::uint64_t CreationTime = 0;  // file times, UTC
    std::uint64_t LastAccessTime = 0;
    std::uint64_t LastWriteTime = 0;
    std::uint32_t Attributes = 0;  // the platform's attribute bits: 1 read-only, 0x20 archive
    // Which file it is, whatever its name: a file that replaces another has its own.
    std::uint64_t Volume = 0;
    std::uint64_t Index = 0;
};

// None when the file is not there or its facts are refused.
std::optional<FileFacts> ReadFileFacts(const std::filesystem::path& path);

// Whether a file whose facts were read twice was neither replaced nor written to in between. No facts are facts as
// well.
bool IsUnchanged(const std::optional<FileFacts>& before, const std::optional<FileFacts>& after);

}  // namespace corvina::embedded
