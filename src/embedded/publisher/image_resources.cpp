#include "embedded/publisher/image_resources.h"

#include <algorithm>
#include <array>
#include <span>

#include "base/little_endian.h"

namespace corvina::publisher {

namespace {

constexpr std::size_t DosHeaderSize = 64;
constexpr std::uint16_t DosSignature = 0x5A4D;     // "MZ"
constexpr std::uint32_t ImageSignature = 0x4550;   // "PE" and two zero bytes
constexpr std::size_t FileHeaderSize = 24;         // with the signature
constexpr std::uint16_t Optional32Magic = 0x10B;   // the optional header of 32-bit images
constexpr std::uint16_t Optional64Magic = 0x20B;   // the same of 64-bit ones
constexpr std::size_t DirectoriesOffset32 = 96;    // in the optional header: its table of data directories
constexpr std::size_t DirectoriesOffset64 = 112;   // each is preceded by the number of entries
constexpr std::size_t ResourceDirectoryIndex = 2;  // the entry of the resources
constexpr std::size_t DirectorySize = 8;
constexpr std::size_t LongestOptionalHeader = DirectoriesOffset64 + 16 * DirectorySize;
constexpr std::size_t SectionHeaderSize = 40;
constexpr std::size_t MostSections = 96;  // more are not loaded by the platform either

constexpr std::size_t TreeNodeHeaderSize = 16;
constexpr std::size_t TreeEntrySize = 8;
constexpr std::size_t DataEntrySize = 16;
constexpr std::uint32_t HighBit = 0x8000'0000;  // of an entry: named by a text; leads to another directory

// Over all directories that one question walks through, so that a tree which leads to itself ends soon.
constexpr std::size_t MostEntries = 10'000;
constexpr std::size_t MostResources = 1'000;

}  // namespace

std::unique_ptr<ImageResources> ImageResources::Open(std::unique_ptr<RandomAccessFile> file) {
    if (file == nullptr || file->Size() > LargestImage) {
        return nullptr;
    }
    std::unique_ptr<ImageResources> image(new ImageResources(std::move(file)));
    return image->ReadHeaders() ? std::move(image) : nullptr;
}

bool ImageResources::ReadWhole(std::uint64_t offset, std::span<std::byte> buffer) const {
    return file_->ReadAt(offset, buffer) == buffer.size();
}

bool ImageResources::ReadHeaders() {
    std::array<std::byte, DosHeaderSize> dos;
    std::array<std::byte, FileHeaderSize> header;
    if (!ReadWhole(0, dos) || LoadUInt16(dos.data()) != DosSignature) {
        return false;
    }
    const std::uint64_t headerOffset = LoadUInt32(dos.data() + 60);
    if (!ReadWhole(headerOffset, header) || LoadUInt32(header.data()) != ImageSignature) {
        return false;
    }
    const std::size_t sectionCount = LoadUInt16(header.data() + 6);
    const std::size_t optionalSize = LoadUInt16(header.data() + 20);
    std::array<std::byte, LongestOptionalHeader> optional{};
    const std::span known = std::span(optional).first(std::min(optionalSize, optional.size()));
    if (known.size() < 2 || !ReadWhole(headerOffset + FileHeaderSize, known)) {
        return false;
    }
    const std::uint16_t magic = LoadUInt16(optional.data());
    if (magic != Optional32Magic && magic != Optional64Magic) {
        return false;
    }
    const std::size_t directories = magic == Optional32Magic ? DirectoriesOffset32 : DirectoriesOffset64;
    const std::size_t place = directories + ResourceDirectoryIndex * DirectorySize;
    if (LoadUInt32(optional.data() + directories - 4) <= ResourceDirectoryIndex ||
        place + DirectorySize > known.size()) {
        return false;
    }
    ReadSections(headerOffset + FileHeaderSize + optionalSize, std::min(sectionCount, MostSections));
    const std::uint32_t root = LoadUInt32(optional.data() + place);
    const Section* const section = root == 0 ? nullptr : SectionOf(root, TreeNodeHeaderSize);
    if (section == nullptr) {
        return false;
    }
    // Up to the end of the section, whatever the directory says of the size: some linkers count less.
    const std::uint32_t before = root - section->Address;
    tree_ = {root, section->Size - before, section->Offset + before};
    return true;
}

void ImageResources::ReadSections(std::uint64_t offset, std::size_t count) {
    std::array<std::byte, SectionHeaderSize> header;
    for (std::size_t index = 0; index < count && ReadWhole(offset + index * SectionHeaderSize, header); ++index) {
        Section section;
        section.Address = LoadUInt32(header.data() + 12);
        section.Size = LoadUInt32(header.data() + 16);
        section.Offset = LoadUInt32(header.data() + 20);
        if (section.Offset < file_->Size()) {
            const std::uint64_t inFile = file_->Size() - section.Offset;
            section.Size = static_cast<std::uint32_t>(std::min<std::uint64_t>(section.Size, inFile));
            sections_.push_back(section);
        }
    }
}

// The section that holds this part of the running program in the file; null when none does.
const ImageResources::Section* ImageResources::SectionOf(std::uint32_t address, std::uint32_t size) const {
    for (const Section& section : sections_) {
        if (address >= section.Address && address - section.Address < section.Size &&
            size <= section.Size - (address - section.Address)) {
            return &section;
        }
    }
    return nullptr;
}

// The entries of one directory of the tree; `place` counts from its root. Takes what it reads from `entriesLeft`.
std::vector<ImageResources::Entry> ImageResources::ReadDirectory(std::uint32_t place, std::size_t& entriesLeft) const {
    std::vector<Entry> entries;
    std::array<std::byte, TreeNodeHeaderSize> header;
    if (place >= tree_.Size || tree_.Size - place < header.size() ||
        !ReadWhole(std::uint64_t{tree_.Offset} + place, header)) {
        return entries;
    }
    const std::size_t stated = std::size_t{LoadUInt16(header.data() + 12)} + LoadUInt16(header.data() + 14);
    const std::size_t held = (tree_.Size - place - header.size()) / TreeEntrySize;
    std::vector<std::byte> bytes(std::min({stated, held, entriesLeft}) * TreeEntrySize);
    const std::size_t read = file_->ReadAt(std::uint64_t{tree_.Offset} + place + header.size(), bytes);
    for (std::size_t offset = 0; offset + TreeEntrySize <= read; offset += TreeEntrySize) {
        entries.push_back({LoadUInt32(bytes.data() + offset), LoadUInt32(bytes.data() + offset + 4)});
    }
    // Empty directories count too: they cost a read.
    entriesLeft -= std::min(entriesLeft, entries.size() + 1);
    return entries;
}

// Whether an entry's name is this text: a count of characters, then UTF-16.
bool ImageResources::HasName(const Entry& entry, std::string_view name) const {
    const std::uint32_t place = entry.Name & ~HighBit;
    std::vector<std::byte> bytes(2 + 2 * name.size());
    if ((entry.Name & HighBit) == 0 || place >= tree_.Size || tree_.Size - place < bytes.size() ||
        !ReadWhole(std::uint64_t{tree_.Offset} + place, bytes) || LoadUInt16(bytes.data()) != name.size()) {
        return false;
    }
    for (std::size_t index = 0; index < name.size(); ++index) {
        if (LoadUInt16(bytes.data() + 2 + 2 * index) != static_cast<unsigned char>(name[index])) {
            return false;
        }
    }
    return true;
}

// Follows the entry of a language to the resource itself.
bool ImageResources::ReadDataEntry(const Entry& language, ImageResource& resource) const {
    std::array<std::byte, DataEntrySize> bytes;
    if ((language.Place & HighBit) != 0 || language.Place >= tree_.Size || tree_.Size - language.Place < bytes.size() ||
        !ReadWhole(std::uint64_t{tree_.Offset} + language.Place, bytes)) {
        return false;
    }
    const std::uint32_t address = LoadUInt32(bytes.data());
    resource.Size = LoadUInt32(bytes.data() + 4);
    const Section* const section = SectionOf(address, resource.Size);
    if (section == nullptr || resource.Size == 0 || resource.Size > LargestResource) {
        return false;
    }
    resource.Language = static_cast<std::uint16_t>(language.Name & 0xFFFF);
    resource.Offset = std::uint64_t{section->Offset} + (address - section->Address);
    return true;
}

template <typename IsWanted>
std::vector<ImageResource> ImageResources::Collect(IsWanted isWanted) const {
    std::vector<ImageResource> resources;
    std::size_t entriesLeft = MostEntries;
    for (const Entry& type : ReadDirectory(0, entriesLeft)) {
        if ((type.Place & HighBit) == 0 || !isWanted(type)) {
            continue;
        }
        for (const Entry& name : ReadDirectory(type.Place & ~HighBit, entriesLeft)) {
            if ((name.Place & HighBit) == 0 || entriesLeft == 0) {
                continue;
            }
            for (const Entry& language : ReadDirectory(name.Place & ~HighBit, entriesLeft)) {
                ImageResource resource;
                if (resources.size() < MostResources && ReadDataEntry(language, resource)) {
                    resources.push_back(resource);
                }
            }
        }
    }
    return resources;
}

std::vector<ImageResource> ImageResources::OfType(std::uint16_t type) const {
    return Collect([type](const Entry& entry) { return entry.Name == type; });
}

std::vector<ImageResource> ImageResources::OfType(std::string_view type) const {
    return Collect([this, type](const Entry& entry) { return HasName(entry, type); });
}

std::vector<std::byte> ImageResources::Read(const ImageResource& resource, std::size_t most) const {
    std::vector<std::byte> bytes(std::min<std::size_t>(resource.Size, most));
    if (!ReadWhole(resource.Offset, bytes)) {
        bytes.clear();
    }
    return bytes;
}

}  // namespace corvina::publisher
