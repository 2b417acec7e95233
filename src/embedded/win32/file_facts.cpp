#include "embedded/file_facts.h"

#include <windows.h>

namespace corvina::embedded {
namespace {

std::uint64_t Joined(DWORD high, DWORD low) {
    return (static_cast<std::uint64_t>(high) << 32) | low;
}

}  // namespace

std::optional<FileFacts> ReadFileFacts(const std::filesystem::path& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
        return std::nullopt;
    }
    FileFacts facts;
    facts.Size = Joined(data.nFileSizeHigh, data.nFileSizeLow);
    facts.CreationTime = Joined(data.ftCreationTime.dwHighDateTime, data.ftCreationTime.dwLowDateTime);
    facts.LastAccessTime = Joined(data.ftLastAccessTime.dwHighDateTime, data.ftLastAccessTime.dwLowDateTime);
    facts.LastWriteTime = Joined(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime);
    facts.Attributes = data.dwFileAttributes;
    return facts;
}

}  // namespace corvina::embedded
