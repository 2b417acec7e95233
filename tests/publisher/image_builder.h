// Program files for the tests, byte by byte: images with resources, message tables, and lists of providers as the
// platform's message compiler lays them out.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/identifiers.h"

namespace corvina::publisher {

struct TestResource {
    std::uint16_t Type = 0;  // or, when it is zero, a name
    std::string TypeName;
    std::uint16_t Language = 0x0409;
    std::string Bytes;
};

// An image of 32 or 64 bits that the platform's loader takes as a data file. Its sections are ".text" and ".rsrc".
std::string MakeImage(const std::vector<TestResource>& resources, bool is64Bit = true);

// Where the root of the resource tree stands in such an image; for tests that damage it.
inline constexpr std::size_t ResourceSectionOffset = 0x400;

// A message table of the given messages, sorted by number, in UTF-16 or in one byte a character. The compiler's line
// break is put behind each text.
using TestMessages = std::vector<std::pair<std::uint32_t, std::wstring>>;
TestResource MakeMessageTable(const TestMessages& messages, std::uint16_t language = 0x0409, bool isUtf16 = true);

// One provider of the resource "WEVT_TEMPLATE".
struct TestProvider {
    struct Value {
        std::wstring Name;
        std::uint64_t Value = 0;
        std::uint32_t MessageId = 0xFFFFFFFF;
    };
    struct Channel {
        std::wstring Path;
        std::uint8_t Id = 0;
        std::uint32_t Flags = 0;
        std::uint32_t MessageId = 0xFFFFFFFF;
    };
    // A group (flag 1) has the number of its first item in the place of the types, their count in that of the length.
    struct Item {
        std::wstring Name;
        std::uint8_t InType = 0;
        std::uint8_t OutType = 0;
        std::uint32_t Flags = 0;
        std::uint16_t Count = 0;
        std::uint16_t Length = 0;
    };
    struct Event {
        std::uint16_t Id = 0;
        std::uint8_t Version = 0;
        std::uint8_t Channel = 0;
        std::uint8_t Level = 0;
        std::uint8_t Opcode = 0;
        std::uint16_t Task = 0;
        std::uint64_t Keywords = 0;
        std::uint32_t MessageId = 0xFFFFFFFF;
        int Template = -1;  // place in Templates; -1 for none
    };
    struct Template {
        std::vector<Item> Items;
        std::size_t TopLevelCount = 0;  // zero: all
    };

    GuidBytes Guid{};
    std::uint32_t MessageId = 0xFFFFFFFF;
    std::vector<Channel> Channels;
    std::vector<Value> Levels;
    std::vector<Value> Opcodes;  // opcode in the upper half, task in the lower one
    std::vector<Value> Tasks;
    std::vector<Value> Keywords;
    std::vector<Event> Events;
    std::vector<Template> Templates;
};

TestResource MakeEventTemplate(const std::vector<TestProvider>& providers);

// A provider with one of everything, and the messages of it.
TestProvider PumpProvider();
TestMessages PumpMessages();

}  // namespace corvina::publisher
