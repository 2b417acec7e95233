// Bytes that are read as if they were a file.
#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "embedded/publisher/image_resources.h"

namespace corvina::publisher {

class MemoryImage : public RandomAccessFile {
  public:
    explicit MemoryImage(std::string bytes) : bytes_(std::move(bytes)) {}

    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const override {
        const auto bytes = std::as_bytes(std::span(bytes_));
        if (offset >= bytes.size()) {
            return 0;
        }
        const auto rest = bytes.subspan(static_cast<std::size_t>(offset));
        const std::size_t count = std::min(buffer.size(), rest.size());
        std::copy_n(rest.begin(), count, buffer.begin());
        return count;
    }
    std::uint64_t Size() const override { return bytes_.size(); }

  private:
    std::string bytes_;
};

inline std::unique_ptr<ImageResources> OpenImage(std::string bytes) {
    return ImageResources::Open(std::make_unique<MemoryImage>(std::move(bytes)));
}

inline std::vector<std::byte> BytesOf(const std::string& text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace corvina::publisher
