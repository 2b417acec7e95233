#include "embedded/evtx/writer_file.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <utility>

#include "platform/error_codes.h"

#ifdef _WIN32
#include <io.h>
#include <sys/stat.h>
#else
#include <unistd.h>
#endif

namespace corvina::evtx {
namespace {

constexpr std::uint32_t DiskFull = 112;
constexpr std::uint32_t FileNameTooLong = 206;
constexpr std::uint32_t DeviceError = 1117;
constexpr int NameAttempts = 100;
constexpr std::size_t BufferSize = 1 << 18;

// The C library's error numbers are the one report that is the same on every system; callers expect the platform's
// codes.
std::uint32_t ErrorCodeOf(int number) {
    switch (number) {
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
            return DiskFull;
        case ENAMETOOLONG:
            return FileNameTooLong;
        default:
            return DeviceError;
    }
}

// Opens a file that must not exist: neither a stranger's file nor a link planted in a shared folder is ever written to.
std::FILE* CreateNew(const std::filesystem::path& path) {
#ifdef _WIN32
    const int descriptor =
        _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
    std::FILE* file = descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
    if (file == nullptr && descriptor >= 0) {
        _close(descriptor);
    }
#else
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    std::FILE* file = descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
    if (file == nullptr && descriptor >= 0) {
        close(descriptor);
    }
#endif
    return file;
}

}  // namespace

WriterFile::WriterFile(std::filesystem::path target) : target_(std::move(target)) {}

WriterFile::~WriterFile() {
    Discard();
}

std::uint32_t WriterFile::Create() {
    std::error_code problem;
    if (target_.filename().empty() || std::filesystem::is_directory(target_, problem)) {
        return error::AccessDenied;
    }
    for (int attempt = 0; attempt < NameAttempts; ++attempt) {
        temporary_ = target_;
        temporary_ += std::to_string(attempt).append(".tmp").insert(0, 1, '.');
        errno = 0;
        file_.reset(CreateNew(temporary_));
        if (file_ != nullptr) {
            created_ = true;
            std::setvbuf(file_.get(), nullptr, _IOFBF, BufferSize);
            return error::Success;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return ErrorCodeOf(errno);
}

std::uint32_t WriterFile::Append(std::string_view bytes) {
    errno = 0;
    const bool whole = std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size();
    return whole ? error::Success : ErrorCodeOf(errno);
}

std::uint32_t WriterFile::WriteFront(std::string_view bytes) {
    errno = 0;
    if (std::fseek(file_.get(), 0, SEEK_SET) != 0) {
        return ErrorCodeOf(errno);
    }
    return Append(bytes);
}

std::uint32_t WriterFile::Commit() {
    errno = 0;
    // The close writes what is still buffered; only when it succeeds is the file whole.
    if (std::fclose(file_.release()) != 0) {
        return ErrorCodeOf(errno);
    }
    std::error_code problem;
    std::filesystem::rename(temporary_, target_, problem);
    if (problem) {
        return ErrorCodeOf(problem.default_error_condition().value());
    }
    created_ = false;
    return error::Success;
}

void WriterFile::Discard() {
    file_.reset();
    if (created_) {
        created_ = false;
        std::error_code problem;
        std::filesystem::remove(temporary_, problem);
    }
}

}  // namespace corvina::evtx
