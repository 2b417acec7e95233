#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "platform/error_codes.h"
#include "platform/temporary_files.h"

namespace corvina {
namespace {

namespace fs = std::filesystem;

// The renaming of Windows 10 1709 and later, which replaces a file while others have it open. Older headers lack it.
constexpr auto RenameInformationEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr DWORD ReplaceIfExists = 0x1;
constexpr DWORD PosixSemantics = 0x2;

struct RenameInformation {
    DWORD Flags;
    HANDLE RootDirectory;
    DWORD FileNameLength;  // in bytes
    WCHAR FileName[1];
};

std::uint32_t LastFailure() {
    const DWORD failure = GetLastError();
    return failure == ERROR_ALREADY_EXISTS ? error::FileExists : failure;
}

class WindowsReplacingFile final : public ReplacingFile {
  public:
    WindowsReplacingFile(HANDLE file, fs::path temporary, fs::path target, ExistingFile existing)
        : file_(file), temporary_(std::move(temporary)), target_(std::move(target)), existing_(existing) {}

    ~WindowsReplacingFile() override {
        Close();
        if (!committed_) {
            DeleteFileW(temporary_.c_str());
        }
    }
    WindowsReplacingFile(const WindowsReplacingFile&) = delete;
    WindowsReplacingFile& operator=(const WindowsReplacingFile&) = delete;

    std::uint32_t Append(std::string_view bytes) override {
        const std::uint32_t failure = WriteAt(end_, bytes);
        end_ += bytes.size();
        return failure;
    }

    std::uint32_t WriteFront(std::string_view bytes) override { return WriteAt(0, bytes); }

    std::uint32_t Commit() override {
        if (!FlushFileBuffers(file_)) {
            return LastFailure();
        }
        if (RenameWhileOpen()) {
            committed_ = true;
            return error::Success;
        }
        // What every system and file system can do; it needs the file closed.
        Close();
        const DWORD replace = existing_ == ExistingFile::Replace ? MOVEFILE_REPLACE_EXISTING : 0;
        committed_ = Move(temporary_, target_, MOVEFILE_WRITE_THROUGH | replace);
        const std::uint32_t failure = committed_ ? error::Success : LastFailure();
        const bool mayBeOpen = failure == ERROR_ACCESS_DENIED || failure == ERROR_SHARING_VIOLATION;
        if (mayBeOpen && existing_ == ExistingFile::Replace) {
            committed_ = MoveInPlaceOfOpenFile();
        }
        return committed_ ? error::Success : failure;
    }

  private:
    bool RenameWhileOpen() {
        std::error_code problem;
        const fs::path whole = fs::absolute(target_, problem);
        if (problem) {
            return false;
        }
        const std::size_t nameSize = whole.native().size() * sizeof(WCHAR);
        std::vector<std::max_align_t> memory((sizeof(RenameInformation) + nameSize) / sizeof(std::max_align_t) + 1);
        auto* const information = reinterpret_cast<RenameInformation*>(memory.data());
        information->Flags = PosixSemantics | (existing_ == ExistingFile::Replace ? ReplaceIfExists : 0);
        information->RootDirectory = nullptr;
        information->FileNameLength = static_cast<DWORD>(nameSize);
        std::memcpy(information->FileName, whole.c_str(), nameSize + sizeof(WCHAR));
        return SetFileInformationByHandle(file_, RenameInformationEx, information,
                                          static_cast<DWORD>(sizeof(RenameInformation) + nameSize)) != FALSE;
    }

    static bool Move(const fs::path& from, const fs::path& to, DWORD flags) {
        return MoveFileExW(from.c_str(), to.c_str(), flags) != FALSE;
    }

    // Systems without that renaming do not replace a file that is open, but its name can be changed. It gets the old
    // name back when the new file cannot take it; a process that ends between the two steps leaves it under the other
    // name, which is why this comes last.
    bool MoveInPlaceOfOpenFile() {
        for (int attempt = 0; attempt < TemporaryNameAttempts; ++attempt) {
            fs::path old = target_;
            old += "." + std::to_string(attempt) + ".corvina-old";
            // One from before has been replaced, and goes when nobody has it open any more.
            DeleteFileW(old.c_str());
            if (Move(target_, old, 0)) {
                if (Move(temporary_, target_, MOVEFILE_WRITE_THROUGH)) {
                    DeleteFileW(old.c_str());
                    return true;
                }
                Move(old, target_, 0);
                return false;
            }
            const DWORD failure = GetLastError();
            if (failure != ERROR_ALREADY_EXISTS && failure != ERROR_FILE_EXISTS && failure != ERROR_ACCESS_DENIED) {
                return false;
            }
        }
        return false;
    }

    std::uint32_t WriteAt(std::uint64_t offset, std::string_view bytes) {
        constexpr std::size_t MostAtOnce = std::size_t{1} << 30;
        while (!bytes.empty()) {
            OVERLAPPED place{};
            place.Offset = static_cast<DWORD>(offset);
            place.OffsetHigh = static_cast<DWORD>(offset >> 32);
            DWORD count = 0;
            const auto wanted = static_cast<DWORD>(std::min(bytes.size(), MostAtOnce));
            if (!WriteFile(file_, bytes.data(), wanted, &count, &place)) {
                return LastFailure();
            }
            if (count == 0) {
                return error::DiskFull;
            }
            offset += count;
            bytes.remove_prefix(count);
        }
        return error::Success;
    }

    void Close() {
        if (file_ != INVALID_HANDLE_VALUE) {
            CloseHandle(file_);
            file_ = INVALID_HANDLE_VALUE;
        }
    }

    HANDLE file_;
    fs::path temporary_;
    fs::path target_;
    ExistingFile existing_;
    std::uint64_t end_ = 0;
    bool committed_ = false;
};

}  // namespace

std::uint32_t CheckTarget(const fs::path& target, ExistingFile existing) {
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return error::Success;
    }
    if (existing == ExistingFile::Keep) {
        return error::FileExists;
    }
    return (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) == 0 ? error::Success
                                                                                    : error::AccessDenied;
}

// Nobody else may write to a temporary file or remove it while it is open; so one that can be removed is abandoned.
bool RemoveIfAbandoned(const fs::path& temporary) {
    return DeleteFileW(temporary.c_str()) != FALSE;
}

std::unique_ptr<ReplacingFile> CreateTemporaryFile(const fs::path& temporary, const fs::path& target,
                                                   ExistingFile existing, std::uint32_t& error) {
    const HANDLE file = CreateFileW(temporary.c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        // A file that is open elsewhere may say so instead of saying that it exists.
        error = LastFailure();
        error = error == ERROR_SHARING_VIOLATION ? error::FileExists : error;
        return nullptr;
    }
    error = error::Success;
    return std::make_unique<WindowsReplacingFile>(file, temporary, target, existing);
}

}  // namespace corvina
