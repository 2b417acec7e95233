// Slots of imported functions, in images made for the purpose and in every damaged form of them.
#include "platform/loaded_image.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace corvina {
namespace {

constexpr std::uint64_t ByOrdinal = 0x8000'0000'0000'0000;

class TestImage {
  public:
    TestImage() : Bytes(0x400) {
        Put<std::uint16_t>(0, 0x5A4D);
        Put<std::uint32_t>(0x3C, 0x80);
        Put<std::uint32_t>(0x80, 0x4550);
        Put<std::uint16_t>(0x98, 0x20B);
        Put<std::uint32_t>(0x98 + 108, 16);
        PutText(0x380, "KERNEL32.dll");
        PutText(0x390, "UxTheme.DLL");
    }

    template <typename Number>
    void Put(std::size_t offset, Number number) {
        std::memcpy(&Bytes.at(offset), &number, sizeof(number));
    }
    void PutText(std::size_t offset, const std::string& text) {
        std::memcpy(&Bytes.at(offset), text.data(), text.size());
    }
    // A descriptor of a library bound at load, and of one bound at the first call.
    void PutImport(std::size_t place, std::uint32_t library, std::uint32_t names, std::uint32_t addresses) {
        Put<std::uint32_t>(0x98 + 112 + 8, 0x200);
        Put(place, names);
        Put(place + 12, library);
        Put(place + 16, addresses);
    }
    void PutDelayLoad(std::size_t place, std::uint32_t library, std::uint32_t names, std::uint32_t addresses) {
        Put<std::uint32_t>(0x98 + 112 + 8 * 13, 0x280);
        Put(place + 4, library);
        Put(place + 12, addresses);
        Put(place + 16, names);
    }
    std::optional<std::size_t> Find() const { return FindImportSlot(Bytes, "uxtheme.dll", 49); }

    std::vector<std::byte> Bytes;
};

TEST(LoadedImage, FindsTheSlotInEitherDirectory) {
    TestImage image;
    EXPECT_EQ(image.Find(), std::nullopt);
    image.PutImport(0x200, 0x380, 0x300, 0x340);
    image.PutImport(0x214, 0x390, 0x320, 0x360);
    image.Put<std::uint64_t>(0x300, ByOrdinal | 49);  // of another library
    image.Put<std::uint64_t>(0x320, 0x3A0);           // by name
    EXPECT_EQ(image.Find(), std::nullopt);
    image.Put<std::uint64_t>(0x328, ByOrdinal | 49);
    EXPECT_EQ(image.Find(), 0x368u);

    TestImage delayed;
    delayed.PutDelayLoad(0x280, 0x380, 0x300, 0x340);
    delayed.PutDelayLoad(0x2A0, 0x390, 0x320, 0x360);
    delayed.Put<std::uint64_t>(0x320, ByOrdinal | 49);
    EXPECT_EQ(delayed.Find(), 0x360u);
    delayed.Put<std::uint16_t>(0x98, 0x10B);  // an image of 32 bits has other tables
    EXPECT_EQ(delayed.Find(), std::nullopt);
}

TEST(LoadedImage, StaysInsideWhateverTheBytesSay) {
    TestImage whole;
    whole.PutImport(0x200, 0x380, 0x300, 0x340);
    whole.PutImport(0x214, 0x390, 0x320, 0x360);
    whole.PutDelayLoad(0x280, 0x390, 0x320, 0x360);
    whole.Put<std::uint64_t>(0x328, ByOrdinal | 49);
    for (std::size_t size = 0; size <= whole.Bytes.size(); ++size) {
        TestImage cut = whole;
        cut.Bytes.resize(size);
        cut.Bytes.shrink_to_fit();  // so that a sanitizer sees a read beyond
        const auto slot = cut.Find();
        EXPECT_TRUE(!slot || *slot + 8 <= size) << size;
    }
    for (std::size_t offset = 0; offset + 4 <= whole.Bytes.size(); ++offset) {
        for (const std::uint32_t wrong : {0xFFFFFFFFu, 0x7FFFFFFFu, 0x3FCu, 1u}) {
            TestImage damaged = whole;
            damaged.Put(offset, wrong);
            const auto slot = damaged.Find();
            EXPECT_TRUE(!slot || *slot + 8 <= damaged.Bytes.size()) << offset;
        }
    }
}

}  // namespace
}  // namespace corvina
