#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "platform/error_codes.h"
#include "platform/temporary_files.h"

namespace corvina {
namespace {

namespace fs = std::filesystem;

std::uint32_t ErrorCodeOf(int systemError) {
    switch (systemError) {
        case ENOENT:
        case ENOTDIR:
            return error::PathNotFound;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
            return error::AccessDenied;
        case EEXIST:
            return error::FileExists;
        case ENOMEM:
            return error::OutOfMemory;
        case ENOSPC:
        case EFBIG:
        case EDQUOT:
            return error::DiskFull;
        case ENAMETOOLONG:
            return error::FileNameTooLong;
        default:
            return error::DeviceError;
    }
}

// Closes itself.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    explicit operator bool() const { return number_ >= 0; }
    int Get() const { return number_; }

    // Whether the name still means this file.
    bool IsAt(const fs::path& path) const {
        struct stat own {};
        struct stat named {};
        return fstat(number_, &own) == 0 && lstat(path.c_str(), &named) == 0 && own.st_dev == named.st_dev &&
               own.st_ino == named.st_ino;
    }

  private:
    int number_;
};

// A log that only some may read is not opened to all by being cleared, not even while it is written.
void TakePermissionsOf(const fs::path& target, const Descriptor& file) {
    struct stat facts {};
    if (stat(target.c_str(), &facts) == 0) {
        fchmod(file.Get(), facts.st_mode & 0777);
    }
}

// Opens a file that must not exist: neither a stranger's file nor a link planted in a shared folder is ever written to.
// On failure gives none and an error code; error::FileExists also when somebody took the new file for an abandoned one.
Descriptor CreateLocked(const fs::path& temporary, std::uint32_t& error) {
    Descriptor file(open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    error = file ? error::Success : ErrorCodeOf(errno);
    // File systems without locks have no abandoned files that could be told from others.
    if (file && ((flock(file.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) || !file.IsAt(temporary))) {
        error = error::FileExists;
        return Descriptor(-1);
    }
    return file;
}

// Gives the file its name without ever replacing another. Where the system cannot rename so, a second name that is made
// for the file does the same; a file system that has neither leaves a moment between the question and the renaming.
int RenameToNew(const fs::path& temporary, const fs::path& target) {
    if (renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return -1;
    }
    if (link(temporary.c_str(), target.c_str()) == 0) {
        unlink(temporary.c_str());
        return 0;
    }
    if (errno == EEXIST || access(target.c_str(), F_OK) == 0) {
        errno = EEXIST;
        return -1;
    }
    return rename(temporary.c_str(), target.c_str());
}

// So that the name, too, survives a loss of power. Not every file system offers it.
void FlushFolderOf(const fs::path& path) {
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    const Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor) {
        fsync(descriptor.Get());
    }
}

class PosixReplacingFile final : public ReplacingFile {
  public:
    PosixReplacingFile(Descriptor file, fs::path temporary, fs::path target, ExistingFile existing)
        : file_(std::move(file)), temporary_(std::move(temporary)), target_(std::move(target)), existing_(existing) {}

    ~PosixReplacingFile() override {
        if (!committed_) {
            unlink(temporary_.c_str());
        }
    }
    PosixReplacingFile(const PosixReplacingFile&) = delete;
    PosixReplacingFile& operator=(const PosixReplacingFile&) = delete;

    std::uint32_t Append(std::string_view bytes) override {
        const std::uint32_t failure = WriteAt(end_, bytes);
        end_ += static_cast<off_t>(bytes.size());
        return failure;
    }

    std::uint32_t WriteFront(std::string_view bytes) override { return WriteAt(0, bytes); }

    std::uint32_t Commit() override {
        if (fsync(file_.Get()) != 0) {
            return ErrorCodeOf(errno);
        }
        const int renamed = existing_ == ExistingFile::Replace ? rename(temporary_.c_str(), target_.c_str())
                                                               : RenameToNew(temporary_, target_);
        if (renamed != 0) {
            return ErrorCodeOf(errno);
        }
        committed_ = true;
        FlushFolderOf(target_);
        return error::Success;
    }

  private:
    std::uint32_t WriteAt(off_t offset, std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t count = pwrite(file_.Get(), bytes.data(), bytes.size(), offset);
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count <= 0) {
                return count < 0 ? ErrorCodeOf(errno) : error::DiskFull;
            }
            offset += count;
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return error::Success;
    }

    Descriptor file_;
    fs::path temporary_;
    fs::path target_;
    ExistingFile existing_;
    off_t end_ = 0;
    bool committed_ = false;
};

}  // namespace

std::uint32_t CheckTarget(const fs::path& target, ExistingFile existing) {
    struct stat facts {};
    if (stat(target.c_str(), &facts) != 0) {
        return error::Success;
    }
    if (existing == ExistingFile::Keep) {
        return error::FileExists;
    }
    constexpr mode_t AnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    return S_ISREG(facts.st_mode) && (facts.st_mode & AnyWrite) != 0 ? error::Success : error::AccessDenied;
}

// A writer holds a lock on its temporary file, which ends with its process. Only a plain file of one's own that nobody
// holds is removed. Whether the name still means the locked file is asked under the lock: its writer may just have
// given it the target's name.
bool RemoveIfAbandoned(const fs::path& temporary) {
    const Descriptor file(open(temporary.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat facts {};
    return file && fstat(file.Get(), &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_uid == geteuid() &&
           flock(file.Get(), LOCK_EX | LOCK_NB) == 0 && file.IsAt(temporary) && unlink(temporary.c_str()) == 0;
}

std::unique_ptr<ReplacingFile> CreateTemporaryFile(const fs::path& temporary, const fs::path& target,
                                                   ExistingFile existing, std::uint32_t& error) {
    Descriptor file = CreateLocked(temporary, error);
    if (!file) {
        return nullptr;
    }
    TakePermissionsOf(target, file);
    return std::make_unique<PosixReplacingFile>(std::move(file), temporary, target, existing);
}

}  // namespace corvina
