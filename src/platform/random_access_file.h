// Reading a file at any place, and nothing else. The file may be open in other programs and may change or shrink while
// it is open here: reads then return what is there, or less.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace corvina {

class RandomAccessFile {
  public:
    virtual ~RandomAccessFile() = default;

    // Reads up to `buffer.size()` bytes from `offset` on and returns how many there were; 0 at the end or on an error.
    virtual std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const = 0;

    // The size in bytes when the file was opened.
    virtual std::uint64_t Size() const = 0;
};

// Opens a file for shared reading. Returns none and the operating system's error code (2, 3, 5 ...) in `error` on
// failure. A folder is refused with error::AccessDenied.
std::unique_ptr<RandomAccessFile> OpenRandomAccessFile(const std::filesystem::path& path, std::uint32_t& error);

}  // namespace corvina
