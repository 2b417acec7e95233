// Other readers find names and templates through a chunk's tables: the chains must hold every one exactly once, in the
// bucket of its hash.
#include <algorithm>
#include <set>

#include "evtx_writer/writer_fixture.h"

namespace corvina::evtx {
namespace {

std::uint64_t Integer(const std::string& chunk, std::size_t offset, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t index = size; index > 0; --index) {
        value = value << 8 | static_cast<unsigned char>(chunk.at(offset + index - 1));
    }
    return value;
}

// The names of a chunk by following its string table, each checked against its bucket.
std::multiset<std::string> NamesOf(const std::string& chunk) {
    std::multiset<std::string> names;
    for (std::size_t bucket = 0; bucket < 64; ++bucket) {
        std::uint64_t limit = ChunkSize;
        for (std::uint64_t offset = Integer(chunk, 128 + 4 * bucket, 4); offset != 0;
             offset = Integer(chunk, offset, 4)) {
            // Chains lead back to older names, so they end.
            EXPECT_LT(offset, limit);
            limit = offset;
            std::uint32_t hash = 0;
            std::string name;
            for (std::size_t index = 0; index < Integer(chunk, offset + 6, 2); ++index) {
                name += chunk.at(offset + 8 + 2 * index);
                hash = hash * 65599 + static_cast<unsigned char>(name.back());
            }
            EXPECT_EQ(Integer(chunk, offset + 4, 2), hash & 0xFFFF);
            EXPECT_EQ((hash & 0xFFFF) % 64, bucket);
            EXPECT_EQ(Integer(chunk, offset + 8 + 2 * name.size(), 2), 0U);
            names.insert(name);
        }
    }
    return names;
}

std::multiset<std::string> TemplatesOf(const std::string& chunk) {
    std::multiset<std::string> identifiers;
    for (std::size_t bucket = 0; bucket < 32; ++bucket) {
        for (std::uint64_t offset = Integer(chunk, 384 + 4 * bucket, 4); offset != 0;
             offset = Integer(chunk, offset, 4)) {
            identifiers.insert(chunk.substr(offset + 4, 16));
            // The definition's fragment: its header in front, its end token at the end.
            EXPECT_EQ(Integer(chunk, offset + 24, 4), 0x0001010FU);
            EXPECT_EQ(chunk.at(offset + 24 + Integer(chunk, offset + 20, 4) - 1), '\0');
        }
    }
    return identifiers;
}

std::size_t Count(const std::string& text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

using ChunkTablesTest = WriterTest;

TEST_F(ChunkTablesTest, NamesAndTemplatesAreStoredOnceAChunk) {
    // Four shapes of data and two of System, written round after round until there are several chunks.
    std::vector<WriterEvent> events;
    for (std::uint16_t index = 0; index < 800; ++index) {
        WriterEvent event = EventOf(index, std::wstring(100, L'x'));
        event.Data.front().Name = std::wstring(L"Shape") + static_cast<wchar_t>(L'A' + index % 4);
        if (index % 2 != 0) {
            event.System.Task = std::uint16_t{1};
        }
        events.push_back(event);
    }
    const std::string file = BytesOf(Write(events));
    std::set<std::string> identifiers;
    std::size_t chunks = 0;
    for (std::size_t offset = FileHeaderSize; offset < file.size(); offset += ChunkSize) {
        const std::string chunk = file.substr(offset, ChunkSize);
        const auto names = NamesOf(chunk);
        for (const char* name : {"Event", "xmlns", "System", "Provider", "Name", "Task", "EventData", "Data"}) {
            EXPECT_EQ(names.count(name), 1U) << name;
        }
        const auto templates = TemplatesOf(chunk);
        EXPECT_EQ(templates.size(), 6U);
        identifiers.insert(templates.begin(), templates.end());
        EXPECT_EQ(Count(chunk, std::string("S\0h\0a\0p\0e\0A\0", 12)), 1U);
        ++chunks;
    }
    EXPECT_GT(chunks, 3U);
    // A shape has the same identifier in all chunks.
    EXPECT_EQ(identifiers.size(), 6U);
}

TEST_F(ChunkTablesTest, AnEventThatGoesToTheNextChunkLeavesNoTrace) {
    // The second event brings names and a template of its own, and does not fit behind the first.
    WriterEvent late = EventOf(2, std::wstring(20000, L'y'));
    late.System.Task = std::uint16_t{1};
    late.System.Opcode = std::uint8_t{1};
    const std::filesystem::path path = Write({EventOf(1, std::wstring(20000, L'x')), late, EventOf(3)});
    const std::string file = BytesOf(path);
    ASSERT_EQ(file.size(), FileHeaderSize + 2 * ChunkSize);
    const std::string first = file.substr(FileHeaderSize, ChunkSize);
    EXPECT_EQ(NamesOf(first).count("Opcode"), 0U);
    EXPECT_EQ(TemplatesOf(first).size(), 2U);
    const std::size_t freeSpace = Integer(first, 48, 4);
    EXPECT_TRUE(std::all_of(first.begin() + static_cast<std::ptrdiff_t>(freeSpace), first.end(),
                            [](char byte) { return byte == '\0'; }));
    EXPECT_EQ(Integer(first, 44, 4), 512U);
    EXPECT_EQ(EventsOf(path).size(), 3U);
}

}  // namespace
}  // namespace corvina::evtx
