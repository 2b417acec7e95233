// A file of nothing but bytes, which can shrink while it is open.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/random_access_file.h"

namespace corvina::evtx::test {

class MemoryFile : public RandomAccessFile {
  public:
    explicit MemoryFile(std::string bytes) : bytes_(std::move(bytes)), sizeWhenOpened_(bytes_.size()) {}

    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const override {
        if (offset >= bytes_.size()) {
            return 0;
        }
        const std::size_t count = std::min(buffer.size(), bytes_.size() - static_cast<std::size_t>(offset));
        std::memcpy(buffer.data(), bytes_.data() + offset, count);
        return count;
    }

    std::uint64_t Size() const override { return sizeWhenOpened_; }

    void Shrink(std::size_t size) { bytes_.resize(size); }

  private:
    std::string bytes_;
    std::uint64_t sizeWhenOpened_;
};

}  // namespace corvina::evtx::test
