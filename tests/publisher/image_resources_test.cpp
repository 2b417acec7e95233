#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "embedded/publisher/message_table.h"
#include "publisher/image_builder.h"
#include "publisher/memory_image.h"

namespace corvina::publisher {
namespace {

std::string TextOf(const ImageResources& image, const ImageResource& resource) {
    const std::vector<std::byte> bytes = image.Read(resource);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Reads everything that an image gives, for images that are not sound; returns how many resources there were.
std::size_t ReadAll(const std::string& bytes) {
    const auto image = OpenImage(bytes);
    if (image == nullptr) {
        return 0;
    }
    std::size_t count = 0;
    for (const auto& resources : {image->OfType(MessageTableType), image->OfType("WEVT_TEMPLATE")}) {
        for (const ImageResource& resource : resources) {
            EXPECT_LE(image->Read(resource).size(), LargestResource);
            ++count;
        }
    }
    return count;
}

void Patch32(std::string& bytes, std::size_t place, std::uint32_t value) {
    for (std::size_t index = 0; index < 4; ++index) {
        bytes[place + index] = static_cast<char>(value >> (8 * index) & 0xFF);
    }
}

const std::vector<TestResource> Resources = {{11, {}, 0x0407, "Deutsch"},
                                             {11, {}, 0x0409, "English"},
                                             {16, {}, 0, "a version"},
                                             {0, "MUI", 0x0409, "languages"},
                                             {0, "WEVT_TEMPLATE", 0x0409, "providers"}};

TEST(ImageResources, FindsResourcesInImagesOfBothKinds) {
    for (const bool is64Bit : {false, true}) {
        const auto image = OpenImage(MakeImage(Resources, is64Bit));
        ASSERT_NE(image, nullptr) << is64Bit;
        const std::vector<ImageResource> tables = image->OfType(MessageTableType);
        ASSERT_EQ(tables.size(), 2U);
        EXPECT_EQ(tables[0].Language, 0x0407);
        EXPECT_EQ(TextOf(*image, tables[0]), "Deutsch");
        EXPECT_EQ(tables[1].Language, 0x0409);
        EXPECT_EQ(TextOf(*image, tables[1]), "English");
        EXPECT_EQ(image->Read(tables[1], 3).size(), 3U);

        const std::vector<ImageResource> named = image->OfType("WEVT_TEMPLATE");
        ASSERT_EQ(named.size(), 1U);
        EXPECT_EQ(TextOf(*image, named[0]), "providers");
        EXPECT_TRUE(image->OfType("WEVT_TEMPLAT").empty());
        EXPECT_TRUE(image->OfType("WEVT_TEMPLATES").empty());
        EXPECT_TRUE(image->OfType(std::uint16_t{5}).empty());
    }
}

TEST(ImageResources, WhatIsNoImageHasNone) {
    std::string image = MakeImage(Resources);
    EXPECT_EQ(OpenImage({}), nullptr);
    EXPECT_EQ(OpenImage("MZ"), nullptr);
    EXPECT_EQ(OpenImage(std::string(1'000, '\0')), nullptr);
    EXPECT_EQ(ImageResources::Open(nullptr), nullptr);
    std::string other = image;
    other[0] = 'X';
    EXPECT_EQ(OpenImage(other), nullptr);
    other = image;
    Patch32(other, 60, 0xFFFFFFF0);  // where the image's header stands
    EXPECT_EQ(OpenImage(other), nullptr);
    constexpr std::size_t ResourceDirectory = 64 + 24 + 112 + 16;
    other = image;
    Patch32(other, ResourceDirectory, 0);
    EXPECT_EQ(OpenImage(other), nullptr) << "an image without resources";
    other = image;
    Patch32(other, ResourceDirectory, 0x2000);
    EXPECT_EQ(OpenImage(other), nullptr) << "between two sections";
    other = image;
    Patch32(other, 64 + 24 + 108, 2);
    EXPECT_EQ(OpenImage(other), nullptr) << "the table of directories ends before the resources";
}

TEST(ImageResources, CutImagesGiveWhatIsThere) {
    for (const bool is64Bit : {false, true}) {
        const std::string image = MakeImage(Resources, is64Bit);
        EXPECT_EQ(ReadAll(image), 3U);
        std::size_t most = 0;
        for (std::size_t size = 0; size < image.size(); ++size) {
            const std::size_t count = ReadAll(image.substr(0, size));
            EXPECT_GE(count, most) << size;
            most = count;
        }
        EXPECT_EQ(most, 3U) << "the last bytes fill a block";
    }
}

TEST(ImageResources, ChangedBytesDoNoHarm) {
    const std::string image = MakeImage(Resources, false);
    for (std::size_t place = 0; place < image.size(); ++place) {
        for (const char byte : {'\0', '\x01', '\x7F', '\x80', '\xFF'}) {
            std::string changed = image;
            changed[place] = byte;
            EXPECT_LE(ReadAll(changed), 1'000U) << place;
        }
    }
}

// Each entry of the tree leads back to the root, which says that it has 131,070 of them.
TEST(ImageResources, TreesThatLeadToThemselvesEnd) {
    std::string image = MakeImage({{11, {}, 0, std::string(0x200000, '\x0B')}});
    Patch32(image, ResourceSectionOffset + 12, 0xFFFFFFFF);
    for (std::size_t entry = 0; entry < 0xFFFFU * 2; ++entry) {
        Patch32(image, ResourceSectionOffset + 16 + 8 * entry, MessageTableType);
        Patch32(image, ResourceSectionOffset + 16 + 8 * entry + 4, 0x80000000);
    }
    EXPECT_EQ(ReadAll(image), 0U);

    // Of 1,500 entries nearly all lead to one resource.
    Patch32(image, ResourceSectionOffset + 12, 1'500 << 16);
    for (std::size_t entry = 2; entry < 0xFFFFU * 2; ++entry) {
        Patch32(image, ResourceSectionOffset + 16 + 8 * entry + 4, 16);
    }
    Patch32(image, ResourceSectionOffset + 16, 0x3000);
    Patch32(image, ResourceSectionOffset + 20, 0x100);
    EXPECT_EQ(ReadAll(image), 1'000U);
}

TEST(ImageResources, ResourcesOutsideTheFileAreLeftOut) {
    const std::string image = MakeImage({{11, {}, 0, "twenty bytes of text"}});
    constexpr std::size_t DataEntry = ResourceSectionOffset + 3 * 24;
    ASSERT_EQ(ReadAll(image), 1U);
    for (const auto& [address, size] : std::vector<std::pair<std::uint32_t, std::uint32_t>>{
             {0x3000, 0x10000}, {0x31FF, 2}, {0xFFFFFFFF, 1}, {0x3000, 0xFFFFFFFF}, {0, 16}, {0x3000, 0}}) {
        std::string changed = image;
        Patch32(changed, DataEntry, address);
        Patch32(changed, DataEntry + 4, size);
        EXPECT_EQ(ReadAll(changed), 0U) << address << " " << size;
    }
    // One byte more than is ever read, though all of it is there.
    EXPECT_EQ(ReadAll(MakeImage({{11, {}, 0, std::string(LargestResource, 'r')}})), 1U);
    EXPECT_EQ(ReadAll(MakeImage({{11, {}, 0, std::string(LargestResource + 1, 'r')}})), 0U);
}

}  // namespace
}  // namespace corvina::publisher
