#include "platform/random_access_file.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/error_codes.h"

namespace corvina {
namespace {

class PosixFile : public RandomAccessFile {
  public:
    PosixFile(int descriptor, std::uint64_t size) : descriptor_(descriptor), size_(size) {}
    ~PosixFile() override { close(descriptor_); }
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;

    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const override {
        if (offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()) - buffer.size()) {
            return 0;
        }
        std::size_t done = 0;
        while (done < buffer.size()) {
            const ssize_t count =
                pread(descriptor_, buffer.data() + done, buffer.size() - done, static_cast<off_t>(offset + done));
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count <= 0) {
                break;
            }
            done += static_cast<std::size_t>(count);
        }
        return done;
    }

    std::uint64_t Size() const override { return size_; }

  private:
    int descriptor_;
    std::uint64_t size_;
};

std::uint32_t ErrorCodeOf(int systemError) {
    switch (systemError) {
        case ENOENT:
            return error::FileNotFound;
        case ENOTDIR:
            return error::PathNotFound;
        case ENOMEM:
            return error::OutOfMemory;
        default:
            return error::AccessDenied;
    }
}

}  // namespace

std::unique_ptr<RandomAccessFile> OpenRandomAccessFile(const std::filesystem::path& path, std::uint32_t& error) {
    // Without O_NONBLOCK the opening of a named pipe would wait for a writer for ever.
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        error = ErrorCodeOf(errno);
        return nullptr;
    }
    struct stat facts {};
    if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        close(descriptor);
        error = error::AccessDenied;
        return nullptr;
    }
    error = error::Success;
    return std::make_unique<PosixFile>(descriptor, static_cast<std::uint64_t>(facts.st_size));
}

}  // namespace corvina
