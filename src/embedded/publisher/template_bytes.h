// The bytes of a WEVT_TEMPLATE resource. All offsets in it count from its first byte, and any of them may be wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace corvina::publisher {

class TemplateBytes {
  public:
    explicit TemplateBytes(std::span<const std::byte> bytes) : bytes_(bytes) {}

    // A part of the resource; empty when it does not lie in it whole.
    std::span<const std::byte> Part(std::size_t offset, std::size_t size) const;

    // The entries of a list behind its header: as many as are stated and lie in the resource. Their size in bytes is a
    // multiple of `entrySize`.
    std::span<const std::byte> Entries(std::size_t offset, std::size_t count, std::size_t entrySize) const;

    // A text: its size in bytes with these four, then UTF-16 up to a zero. False when it does not lie in the resource.
    // Many places may refer to one text: when all of them together have become too long, texts are no longer read.
    bool ReadText(std::uint32_t offset, std::wstring& text);

    // Takes from the same bound for texts that are made from others. False when it is used up.
    bool Spend(std::size_t characters);

  private:
    std::span<const std::byte> bytes_;
    std::size_t charactersLeft_ = std::size_t{8} << 20;
};

}  // namespace corvina::publisher
