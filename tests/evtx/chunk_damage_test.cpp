// Chunks in every state: damaged records, lying headers, and bytes made to cost as much as possible.
#include <chrono>
#include <gtest/gtest.h>

#include "evtx/test_chunk.h"

namespace corvina::evtx::test {
namespace {

std::vector<std::uint64_t> RecordIds(const Chunk& chunk) {
    std::vector<std::uint64_t> ids;
    for (const RecordPlace& record : chunk.Records()) {
        ids.push_back(record.RecordId);
        EXPECT_FALSE(XmlOf(chunk, record).empty());
    }
    return ids;
}

using Ids = std::vector<std::uint64_t>;

TEST(ChunkDamageTest, DamagedRecordsAreSkippedAndCounted) {
    TestChunk testChunk;
    std::vector<std::uint32_t> offsets;
    for (std::uint64_t id = 1; id <= 9; ++id) {
        offsets.push_back(testChunk.AddPlainRecord(id));
    }
    testChunk.Finish();
    testChunk.Put(offsets[2] - 4, LittleEndian(1, 4));           // record 2: its two sizes differ
    testChunk.Put(offsets[3], "##");                             // record 4: no signature
    testChunk.Put(offsets[5] + 4, LittleEndian(0x7FFFFFFF, 4));  // record 6: leaves the chunk
    testChunk.Put(offsets[6] + 4, LittleEndian(3, 4));           // record 7: smaller than a record can be
    testChunk.Put(offsets[8] + 28, "\x1F");                      // record 9: content that is no binary XML
    const Chunk chunk(testChunk.Bytes());
    EXPECT_EQ(RecordIds(chunk), (Ids{1, 3, 5, 8}));
    // Two neighbours without anything sound between them look like one gap.
    EXPECT_EQ(chunk.Damage().SkippedRecords, 4U);
    EXPECT_TRUE(chunk.Damage().RecordsChecksum);
    EXPECT_FALSE(chunk.Damage().HeaderChecksum);
    EXPECT_FALSE(chunk.Damage().MissingHeader);
}

TEST(ChunkDamageTest, ChecksumsAreReportedAndDoNotHideRecords) {
    TestChunk testChunk;
    testChunk.AddPlainRecord(1);
    const Chunk sound(testChunk.Finish());
    EXPECT_FALSE(sound.Damage().HeaderChecksum || sound.Damage().RecordsChecksum);
    testChunk.Put(200, "x");
    const Chunk header(testChunk.Bytes());
    EXPECT_TRUE(header.Damage().HeaderChecksum && !header.Damage().RecordsChecksum);
    EXPECT_EQ(RecordIds(header), Ids{1});
    const Chunk unchecked(testChunk.Bytes(), false);
    EXPECT_FALSE(unchecked.Damage().HeaderChecksum);
}

TEST(ChunkDamageTest, RecordsOutliveTheirChunksHeader) {
    TestChunk testChunk;
    testChunk.AddPlainRecord(1);
    const auto second = testChunk.AddPlainRecord(2);
    testChunk.AddPlainRecord(3);
    testChunk.Finish();
    // A header that lies about the used space: nonsense counts for nothing, a sane one is believed.
    for (const std::uint32_t end : {0U, 511U, 65537U, 0xFFFFFFFFU}) {
        testChunk.Put(48, LittleEndian(end, 4));
        EXPECT_EQ(RecordIds(Chunk(testChunk.Bytes())), (Ids{1, 2, 3})) << end;
    }
    testChunk.Put(48, LittleEndian(second, 4));
    EXPECT_EQ(RecordIds(Chunk(testChunk.Bytes())), Ids{1});
    testChunk.Put(0, std::string(512, '\0'));
    EXPECT_EQ(RecordIds(Chunk(testChunk.Bytes())), (Ids{1, 2, 3}));
    EXPECT_TRUE(Chunk(testChunk.Bytes()).Damage().MissingHeader);
    EXPECT_FALSE(Chunk(testChunk.Bytes()).Damage().HeaderChecksum);
    testChunk.Put(512, std::string(40, '\0'));
    EXPECT_EQ(RecordIds(Chunk(testChunk.Bytes())), (Ids{2, 3}));
}

TEST(ChunkDamageTest, UnusedShortAndForeignChunksHaveNoRecords) {
    EXPECT_TRUE(Chunk({}).Records().empty());
    EXPECT_TRUE(Chunk(std::vector<std::byte>(100, std::byte{'*'})).Records().empty());
    const Chunk zeros(std::vector<std::byte>(ChunkSize, std::byte{0}));
    EXPECT_TRUE(zeros.Records().empty());
    EXPECT_FALSE(zeros.Damage().MissingHeader);
    EXPECT_EQ(zeros.Damage().SkippedRecords, 0U);
    TestChunk testChunk;
    testChunk.AddPlainRecord(1);
    testChunk.AddPlainRecord(2);
    std::vector<std::byte> cut = testChunk.Finish();
    cut.resize(testChunk.FreeSpace() - 1);
    EXPECT_EQ(RecordIds(Chunk(cut)), Ids{1});
}

TEST(ChunkDamageTest, OnlyListedRecordsAreRead) {
    TestChunk testChunk;
    testChunk.AddPlainRecord(1);
    const Chunk chunk(testChunk.Finish());
    SystemValues system;
    std::vector<DataValue> data;
    RenderingInfo info;
    const RecordPlace sound = chunk.Records()[0];
    for (const RecordPlace& place : {RecordPlace{0xFFFFFFF0, 64, 1, 0}, RecordPlace{sound.Offset, 0xFFFFFFFF, 1, 0},
                                     RecordPlace{sound.Offset + 1, sound.Size, 1, 0}, RecordPlace{}}) {
        std::string xml = "kept";
        EXPECT_FALSE(chunk.AppendXml(place, xml));
        EXPECT_EQ(xml, "kept");
        EXPECT_FALSE(chunk.ReadSystem(place, system));
        EXPECT_FALSE(chunk.ReadData(place, data));
        EXPECT_FALSE(chunk.ReadRenderingInfo(place, info));
    }
}

TEST(ChunkDamageTest, OffsetsAndSizesIntoNowhereAreRefused) {
    const auto isDamaged = [](auto make) {
        TestChunk chunk;
        Tokens tokens(chunk);
        make(chunk, tokens.Header());
        chunk.AddRecord(1, tokens);
        return OnlyXml(chunk).empty();
    };
    for (const std::uint32_t offset : {0xFFFFFFFFU, 65536U, 65535U, 65513U, 0U, 100U}) {
        EXPECT_TRUE(isDamaged([&](TestChunk&, Tokens& tokens) { tokens.Instance(offset, {}); })) << offset;
        EXPECT_TRUE(isDamaged([&](TestChunk&, Tokens& tokens) {
            tokens.Raw({"\x01\0\0\0\0", 5}).Raw(LittleEndian(offset, 4)).CloseEmpty();
        })) << offset;
    }
    const auto withValues = [](TestChunk& chunk, Tokens& tokens, std::string_view values) {
        Tokens definition(chunk);
        definition.Header().SlotElement("Event", 0).EndFragment();
        Tokens instance(chunk);
        instance.Instance(chunk.Define(definition), {});
        tokens.Raw(std::string_view(instance.Bytes()).substr(0, 10)).Raw(values);
    };
    EXPECT_FALSE(isDamaged([&](TestChunk& c, Tokens& t) { withValues(c, t, {"\1\0\0\0\2\0\1\0a\0", 10}); }));
    EXPECT_TRUE(isDamaged([&](TestChunk& c, Tokens& t) { withValues(c, t, {"\xFF\xFF\xFF\xFF", 4}); }));
    EXPECT_TRUE(isDamaged([&](TestChunk& c, Tokens& t) { withValues(c, t, {"\1\0\0\0\xFF\xFF\1\0a\0", 10}); }));
    EXPECT_TRUE(isDamaged([&](TestChunk& c, Tokens& t) { withValues(c, t, {"\1\0", 2}); }));
}

TEST(ChunkDamageTest, DefinitionsCannotContainInstances) {
    TestChunk chunk;
    // The offset that the definition will get: it refers to itself.
    Tokens probe(chunk);
    probe.Header().Instance(0, {}).EndFragment();
    const std::uint32_t self = chunk.Define(probe) - static_cast<std::uint32_t>(24 + probe.Bytes().size());
    Tokens loop(chunk);
    loop.Header().Instance(self, {}).EndFragment();
    ASSERT_EQ(chunk.Define(loop), self);
    Tokens content(chunk);
    content.Header().Instance(self, {}).EndFragment();
    chunk.AddRecord(1, content);
    EXPECT_EQ(OnlyXml(chunk), "");
}

// Wraps content in `depth` nested values, each with one element around it.
std::string Nested(TestChunk& chunk, int depth, std::uint16_t copies) {
    Tokens definition(chunk);
    definition.Header().Open("N").CloseStart();
    for (std::uint16_t copy = 0; copy < copies; ++copy) {
        definition.Slot(0);
    }
    const std::uint32_t offset = chunk.Define(definition.End().EndFragment());
    std::string value;
    for (int level = 0; level < depth; ++level) {
        Tokens tokens(chunk);
        value = tokens.Header().Instance(offset, {{NestedXmlType, value}}).EndFragment().Bytes();
    }
    return value;
}

TEST(ChunkDamageTest, DepthIsBounded) {
    const auto render = [](const std::string& bytes, TestChunk& chunk) {
        chunk.AddRecord(1, Tokens(chunk).Raw(bytes));
        return OnlyXml(chunk);
    };
    TestChunk fits;
    EXPECT_FALSE(render(Nested(fits, 60, 1), fits).empty());
    TestChunk deep;
    EXPECT_TRUE(render(Nested(deep, 70, 1), deep).empty());
    TestChunk elements;
    Tokens tokens(elements);
    for (int level = 0; level < 1000; ++level) {
        tokens.Open("E", NoDependencyField).CloseStart();
    }
    for (int level = 0; level < 1000; ++level) {
        tokens.End();
    }
    EXPECT_TRUE(render(tokens.Bytes(), elements).empty());
}

TEST(ChunkDamageTest, CostIsBoundedWhateverARecordAsksFor) {
    const auto start = std::chrono::steady_clock::now();
    // Templates that contain one another several times: 8 to the power of 40 elements.
    TestChunk bomb;
    const std::string nested = Nested(bomb, 40, 8);
    while (bomb.FreeSpace() < 40000) {
        bomb.AddRecord(1, Tokens(bomb).Raw(nested));
    }
    EXPECT_TRUE(Chunk(bomb.Finish()).Records().empty());

    // One large value, substituted thousands of times, and an array in an element that repeats another one.
    TestChunk repeated;
    Tokens definition(repeated);
    definition.Header().Open("Event").CloseStart();
    for (int copy = 0; copy < 5000; ++copy) {
        definition.Slot(0);
    }
    Tokens arrays(repeated);
    arrays.Header().Open("Event").CloseStart().Open("A").CloseStart().Slot(0).SlotElement("B", 0).End();
    const auto first = repeated.Define(definition.End().EndFragment());
    const auto second = repeated.Define(arrays.End().EndFragment());
    repeated.AddRecord(1, Tokens(repeated).Instance(first, {TextValue(std::u16string(5000, u'x'))}));
    repeated.AddRecord(2, Tokens(repeated).Instance(second, {{0x84, std::string(10000, 'x')}}));
    EXPECT_TRUE(Chunk(repeated.Finish()).Records().empty());

    // One long name, referred to by every reference of a definition that overlaps itself at many places.
    TestChunk overlapping;
    const std::string name(250, 'n');
    Tokens entities(overlapping);
    entities.Header().Open("E").CloseStart();
    for (int copy = 0; copy < 4000; ++copy) {
        entities.Entity(name);
    }
    const auto place = overlapping.Define(entities.End().EndFragment());
    for (std::uint32_t index = 0; index < 500; ++index) {
        overlapping.AddRecord(index, Tokens(overlapping).Instance(place + 5 * index, {}));
    }
    Chunk(overlapping.Finish()).Damage();

    // Far more than it takes even with sanitizers; without bounds none of these would end.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

}  // namespace
}  // namespace corvina::evtx::test
