// The resources of a program file (a Portable Executable image, 32-bit or 64-bit), read out of the file without loading
// it: programs out of another computer are data here.
// Format: the published PE/COFF format; the resource section is a tree of three levels, type, name
// and language.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/random_access_file.h"

namespace corvina::publisher {

// Larger files are refused, larger resources are not read. The platform's largest message files have some ten
// megabytes.
inline constexpr std::uint64_t LargestImage = std::uint64_t{512} << 20;
inline constexpr std::size_t LargestResource = std::size_t{16} << 20;

// The type of the resource with a program's message texts.
inline constexpr std::uint16_t MessageTableType = 11;

struct ImageResource {
    std::uint16_t Language = 0;  // 0x0409 for English (United States), 0 for neutral
    std::uint64_t Offset = 0;    // in the file
    std::uint32_t Size = 0;      // at most LargestResource
};

class ImageResources {
  public:
    // Reads the file's headers. None when it is not an image or has no resources.
    static std::unique_ptr<ImageResources> Open(std::unique_ptr<RandomAccessFile> file);

    // The resources of a type, by number or by name (of ASCII letters), in the order of the image's directory. Those
    // that do not lie in the file are left out. There are at most 1,000.
    std::vector<ImageResource> OfType(std::uint16_t type) const;
    std::vector<ImageResource> OfType(std::string_view type) const;

    // The bytes of a resource, or the first `most` of them; empty when they cannot be read whole.
    std::vector<std::byte> Read(const ImageResource& resource, std::size_t most = LargestResource) const;

  private:
    struct Section {
        std::uint32_t Address = 0;  // where the section begins in the running program
        std::uint32_t Size = 0;     // in the file
        std::uint32_t Offset = 0;   // in the file
    };
    struct Entry {
        std::uint32_t Name = 0;  // a number, or with the high bit set the place of a text
        std::uint32_t Place = 0;
    };

    explicit ImageResources(std::unique_ptr<RandomAccessFile> file) : file_(std::move(file)) {}

    bool ReadHeaders();
    void ReadSections(std::uint64_t offset, std::size_t count);
    bool ReadWhole(std::uint64_t offset, std::span<std::byte> buffer) const;
    const Section* SectionOf(std::uint32_t address, std::uint32_t size) const;
    std::vector<Entry> ReadDirectory(std::uint32_t place, std::size_t& entriesLeft) const;
    bool HasName(const Entry& entry, std::string_view name) const;
    bool ReadDataEntry(const Entry& language, ImageResource& resource) const;
    template <typename IsWanted>
    std::vector<ImageResource> Collect(IsWanted isWanted) const;

    std::unique_ptr<RandomAccessFile> file_;
    std::vector<Section> sections_;
    Section tree_;  // the part of a section from the root directory on
};

}  // namespace corvina::publisher
