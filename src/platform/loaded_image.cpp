#include "platform/loaded_image.h"

#include "base/little_endian.h"

namespace corvina {
namespace {

constexpr std::uint16_t Magic64 = 0x020B;
constexpr std::size_t DirectoriesOffset = 112;  // behind the beginning of the optional header of 64 bits
constexpr std::uint32_t ImportDirectory = 1;
constexpr std::uint32_t DelayLoadDirectory = 13;
constexpr std::size_t SlotSize = 8;
constexpr std::uint64_t ByOrdinal = 0x8000'0000'0000'0000;

// Where a kind of descriptor keeps its fields.
struct DescriptorLayout {
    std::size_t Size;
    std::size_t LibraryName;
    std::size_t NameTable;
    std::size_t AddressTable;
};
constexpr DescriptorLayout ImportLayout = {20, 12, 0, 16};
constexpr DescriptorLayout DelayLoadLayout = {32, 4, 16, 12};

// Reading at any offset; beyond the end everything is zero, which ends every table.
class Image {
  public:
    explicit Image(std::span<const std::byte> bytes) : bytes_(bytes) {}

    bool Holds(std::size_t offset, std::size_t size) const {
        return offset <= bytes_.size() && size <= bytes_.size() - offset;
    }
    std::uint16_t UInt16(std::size_t offset) const { return Holds(offset, 2) ? LoadUInt16(&bytes_[offset]) : 0; }
    std::uint32_t UInt32(std::size_t offset) const { return Holds(offset, 4) ? LoadUInt32(&bytes_[offset]) : 0; }
    std::uint64_t UInt64(std::size_t offset) const { return Holds(offset, 8) ? LoadUInt64(&bytes_[offset]) : 0; }

    bool HasText(std::size_t offset, std::string_view text) const {
        if (!Holds(offset, text.size() + 1) || bytes_[offset + text.size()] != std::byte{0}) {
            return false;
        }
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (LowerCase(std::to_integer<char>(bytes_[offset + i])) != LowerCase(text[i])) {
                return false;
            }
        }
        return true;
    }

  private:
    static char LowerCase(char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    }

    std::span<const std::byte> bytes_;
};

// The offset of a data directory's contents; 0 when there is none.
std::size_t DirectoryOffset(const Image& image, std::uint32_t index) {
    constexpr std::size_t NewHeaderField = 0x3C;
    constexpr std::size_t FileHeaderSize = 24;  // with the signature before it
    const std::size_t newHeader = image.UInt32(NewHeaderField);
    if (image.UInt16(0) != 0x5A4D || image.UInt32(newHeader) != 0x4550) {
        return 0;
    }
    const std::size_t optionalHeader = newHeader + FileHeaderSize;
    const std::uint32_t directories = image.UInt32(optionalHeader + DirectoriesOffset - 4);
    if (image.UInt16(optionalHeader) != Magic64 || index >= directories) {
        return 0;
    }
    return image.UInt32(optionalHeader + DirectoriesOffset + std::size_t{8} * index);
}

std::optional<std::size_t> FindSlot(const Image& image, std::size_t nameTable, std::size_t addressTable,
                                    std::uint16_t ordinal) {
    if (nameTable == 0 || addressTable == 0) {
        return std::nullopt;
    }
    for (std::size_t i = 0;; ++i) {
        const std::uint64_t name = image.UInt64(nameTable + i * SlotSize);
        if (name == 0) {
            return std::nullopt;
        }
        const std::size_t slot = addressTable + i * SlotSize;
        if (name == (ByOrdinal | ordinal) && image.Holds(slot, SlotSize)) {
            return slot;
        }
    }
}

std::optional<std::size_t> FindIn(const Image& image, std::size_t directory, const DescriptorLayout& layout,
                                  std::string_view library, std::uint16_t ordinal) {
    if (directory == 0) {
        return std::nullopt;
    }
    for (std::size_t descriptor = directory;; descriptor += layout.Size) {
        const std::uint32_t name = image.UInt32(descriptor + layout.LibraryName);
        if (name == 0) {
            return std::nullopt;
        }
        if (!image.HasText(name, library)) {
            continue;
        }
        const auto slot = FindSlot(image, image.UInt32(descriptor + layout.NameTable),
                                   image.UInt32(descriptor + layout.AddressTable), ordinal);
        if (slot) {
            return slot;
        }
    }
}

}  // namespace

std::optional<std::size_t> FindImportSlot(std::span<const std::byte> image, std::string_view library,
                                          std::uint16_t ordinal) {
    const Image read(image);
    const auto slot = FindIn(read, DirectoryOffset(read, ImportDirectory), ImportLayout, library, ordinal);
    return slot ? slot : FindIn(read, DirectoryOffset(read, DelayLoadDirectory), DelayLoadLayout, library, ordinal);
}

}  // namespace corvina
