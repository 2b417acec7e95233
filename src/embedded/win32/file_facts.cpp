#include "embedded/file_facts.h"

#include <windows.h>

namespace corvina::embedded {
namespace {

std::uint64_t Joined(DWORD high, DWORD low) {
    return (static_cast<std::uint64_t>(high) << 32) | low;
}

std::uint64_t Joined(const FILETIME& time) {
    return Joined(time.dwHighDateTime, time.dwLowDateTime);
}

// The two records of the system that hold these facts have the same names for them.
template <typename Data>
FileFacts FactsOf(const Data& data) {
    FileFacts facts;
    facts.Size = Joined(data.nFileSizeHigh, data.nFileSizeLow);
    facts.CreationTime = Joined(data.ftCreationTime);
    facts.LastAccessTime = Joined(data.ftLastAccessTime);
    facts.LastWriteTime = Joined(data.ftLastWriteTime);
    facts.Attributes = data.dwFileAttributes;
    return facts;
}

}  // namespace

std::optional<FileFacts> ReadFileFacts(const std::filesystem::path& path) {
    // Opened for its attributes alone, which needs no permission to read. Only an open file tells which it is.
    const HANDLE file =
        CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        BY_HANDLE_FILE_INFORMATION information{};
        const bool known = GetFileInformationByHandle(file, &information) != FALSE;
        CloseHandle(file);
        if (known) {
            FileFacts facts = FactsOf(information);
            facts.Volume = information.dwVolumeSerialNumber;
            facts.Index = Joined(information.nFileIndexHigh, information.nFileIndexLow);
            return facts;
        }
    }
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
        return std::nullopt;
    }
    return FactsOf(data);
}

}  // namespace corvina::embedded
