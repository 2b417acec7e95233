#include "platform/random_access_file.h"

#include <windows.h>

#include <algorithm>
#include <limits>

#include "platform/error_codes.h"

namespace corvina {
namespace {

class WindowsFile : public RandomAccessFile {
  public:
    WindowsFile(HANDLE file, std::uint64_t size) : file_(file), size_(size) {}
    ~WindowsFile() override { CloseHandle(file_); }
    WindowsFile(const WindowsFile&) = delete;
    WindowsFile& operator=(const WindowsFile&) = delete;

    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const override {
        constexpr std::size_t MostAtOnce = std::size_t{1} << 30;
        // The system takes offsets as signed numbers, and some negative ones have a meaning of their own.
        if (offset > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) - buffer.size()) {
            return 0;
        }
        std::size_t done = 0;
        while (done < buffer.size()) {
            const std::uint64_t position = offset + done;
            OVERLAPPED place{};
            place.Offset = static_cast<DWORD>(position);
            place.OffsetHigh = static_cast<DWORD>(position >> 32);
            DWORD count = 0;
            const auto wanted = static_cast<DWORD>(std::min(buffer.size() - done, MostAtOnce));
            if (!ReadFile(file_, buffer.data() + done, wanted, &count, &place) || count == 0) {
                break;
            }
            done += count;
        }
        return done;
    }

    std::uint64_t Size() const override { return size_; }

  private:
    HANDLE file_;
    std::uint64_t size_;
};

}  // namespace

std::unique_ptr<RandomAccessFile> OpenRandomAccessFile(const std::filesystem::path& path, std::uint32_t& error) {
    // The event log service and other viewers keep their files open for writing, so every kind of sharing is allowed.
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_RANDOM_ACCESS, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        error = GetLastError();
        return nullptr;
    }
    LARGE_INTEGER size{};
    if (GetFileType(file) != FILE_TYPE_DISK || !GetFileSizeEx(file, &size)) {
        CloseHandle(file);
        error = error::AccessDenied;
        return nullptr;
    }
    error = error::Success;
    return std::make_unique<WindowsFile>(file, static_cast<std::uint64_t>(size.QuadPart));
}

}  // namespace corvina
