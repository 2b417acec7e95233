// Templates that chunks of a file share: equal definitions are compiled once, and no record is ever read differently
// for what was read before it.
#include "embedded/evtx/kept_templates.h"

#include <cstring>
#include <gtest/gtest.h>

#include "base/utf.h"
#include "embedded/evtx/event_tree.h"
#include "embedded/evtx/template_store.h"
#include "evtx/test_chunk.h"

namespace corvina::evtx::test {
namespace {

constexpr std::uint32_t DefinitionPlace = 20'000;
constexpr std::size_t IdentifierField = 4;

// An element's start in a definition whose name is stored right there.
std::string OpenWithName(std::size_t place, std::string_view name, bool hasAttributes) {
    std::string bytes = std::string(hasAttributes ? "\x41" : "\x01", 1) + LittleEndian(0xFFFF, 2) + "size";
    return bytes + LittleEndian(place + bytes.size() + 4, 4) + NameBytes(name) + (hasAttributes ? "attr" : "");
}

// A chunk with one record of a template that has everything a template can have. `namesInside` says whether names are
// stored in the definition where that is possible, `isEnded` whether it has an end token, and not just its length.
std::string ChunkWithDefinition(bool namesInside, bool isEnded = true) {
    TestChunk chunk;
    const std::size_t content = DefinitionPlace + 24;
    Tokens tokens(chunk);
    tokens.Header();
    if (namesInside) {
        tokens.Raw(OpenWithName(content + tokens.Bytes().size(), "Event", true));
    } else {
        tokens.Raw("\x41" + LittleEndian(0xFFFF, 2) + LittleEndian(77, 4) + LittleEndian(chunk.Name("Event"), 4) +
                   LittleEndian(78, 4));
    }
    tokens.Attribute("lang").Text(u"\u00e4&").Entity("amp").Character(0x41).CloseStart();
    tokens.Open("System").CloseStart();
    tokens.Open("Provider").Attribute("Name").OptionalSlot(0).CloseEmpty();
    tokens.SlotElement("EventID", 1).TextElement("Level", u"4").TextElement("Channel", u"Own", 3).End();
    tokens.ProcessingInstruction("target", u"data");
    if (namesInside) {
        tokens.Raw(OpenWithName(content + tokens.Bytes().size(), "EventData", false));
    } else {
        tokens.Open("EventData");
    }
    tokens.CloseStart().SlotElement("Data", 2).CharacterData(u"]]>").End().End();
    const std::string behind(60, isEnded ? '\0' : '\x04');
    chunk.Put(DefinitionPlace, std::string(4, '\0') + "0123456789abcdef" +
                                   LittleEndian(tokens.Bytes().size() + (isEnded ? 1 : 0), 4) + tokens.Bytes() +
                                   behind);
    Tokens record(chunk);
    record.Header().Instance(DefinitionPlace,
                             {TextValue(u"Source"), UInt16Value(7), {0x81, Utf16({u"a\0b", 3})}, UInt8Value(1)});
    chunk.AddRecord(1, record.EndFragment());
    const auto bytes = chunk.Finish();
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

std::unique_ptr<Chunk> ReadChunk(const std::string& bytes, const std::shared_ptr<KeptTemplates>& kept) {
    auto buffer = std::make_unique<std::byte[]>(ChunkSize);
    std::memcpy(buffer.get(), bytes.data(), ChunkSize);
    return std::make_unique<Chunk>(std::move(buffer), ChunkSize, false, kept);
}

// All that the readers make of the record of a chunk, in one text.
std::string Reading(const Chunk& chunk) {
    if (chunk.Records().empty()) {
        return "damaged";
    }
    const RecordPlace& record = chunk.Records()[0];
    std::string reading = XmlOf(chunk, record);
    SystemValues system;
    EXPECT_TRUE(chunk.ReadSystem(record, system));
    reading += "|" + Utf8FromWide(system.ProviderName + L"," + system.Channel) + "," +
               std::to_string(system.EventId.value_or(0)) + "," + std::to_string(system.Level.value_or(0));
    std::vector<DataValue> data;
    EXPECT_TRUE(chunk.ReadData(record, data));
    for (const DataValue& value : data) {
        reading += "|" + Utf8FromWide(value.Name + L"=" + value.Text);
    }
    EventTree tree;
    EXPECT_TRUE(chunk.ReadTree(record, tree));
    for (const EventTree::Node& node : tree.Nodes()) {
        TextBuffer<wchar_t> text;
        tree.AppendText(node, text);
        reading += "|";
        AppendUtf8FromUtf16(node.Name, reading);
        reading += ":" + Utf8FromWide(text.View());
    }
    return reading;
}

// The program of the definition of a chunk, found by an instance of it.
std::shared_ptr<Program> ProgramOf(const std::string& bytes, const std::shared_ptr<KeptTemplates>& kept) {
    TemplateStore store(std::as_bytes(std::span(bytes)), kept);
    const std::string instance = std::string("\x01", 1) + std::string(4, '\0') + LittleEndian(DefinitionPlace, 4);
    std::string chunk = bytes;
    chunk.replace(600, instance.size(), instance);
    ByteReader reader(std::as_bytes(std::span(chunk)), 600, chunk.size());
    const ChunkTemplate* const found = store.ReadInstance(reader);
    return found == nullptr ? nullptr : found->Code;
}

TEST(KeptTemplatesTest, EqualDefinitionsAreCompiledOnceWhereverTheirNamesAre) {
    const auto kept = std::make_shared<KeptTemplates>();
    const std::string inside = ChunkWithDefinition(true);
    const std::string outside = ChunkWithDefinition(false);
    const auto program = ProgramOf(inside, kept);
    ASSERT_NE(program, nullptr);
    EXPECT_EQ(ProgramOf(inside, kept), program);
    EXPECT_EQ(ProgramOf(outside, kept), program);
    EXPECT_NE(ProgramOf(inside, nullptr), program);
    // Definitions may share an identifier, and an identifier is part of what a definition is known by.
    std::string other = inside;
    other.replace(DefinitionPlace + IdentifierField, 1, "x");
    EXPECT_NE(ProgramOf(other, kept), program);
    const std::string reading = Reading(*ReadChunk(inside, kept));
    EXPECT_NE(reading.find("<Event lang='\xC3\xA4&amp;&amp;&#65;'><System><Provider Name='Source'/>"), reading.npos)
        << reading;
    EXPECT_EQ(Reading(*ReadChunk(outside, kept)), reading);
    EXPECT_EQ(Reading(*ReadChunk(outside, nullptr)), reading);
}

// Every bit of a definition and of the names it refers to, turned around in another chunk: what is read of that chunk
// must be the same as if nothing had been read before.
TEST(KeptTemplatesTest, DefinitionsThatDifferInAnythingAreNotTakenForOneAnother) {
    std::size_t shared = 0;
    std::size_t different = 0;
    for (const std::string& bytes :
         {ChunkWithDefinition(true), ChunkWithDefinition(false), ChunkWithDefinition(true, false)}) {
        const auto kept = std::make_shared<KeptTemplates>();
        const std::string reading = Reading(*ReadChunk(bytes, kept));
        const auto tryChange = [&](std::size_t place, int bit) {
            std::string changed = bytes;
            changed[place] = static_cast<char>(changed[place] ^ (1 << bit));
            const std::string expected = Reading(*ReadChunk(changed, nullptr));
            const auto fresh = std::make_shared<KeptTemplates>();
            shared += ProgramOf(bytes, fresh) == ProgramOf(changed, fresh) ? 1 : 0;
            different += expected != reading ? 1 : 0;
            EXPECT_EQ(Reading(*ReadChunk(changed, kept)), expected) << place << ", bit " << bit;
            // A definition that takes the first one's place may not leave it misread either.
            EXPECT_EQ(Reading(*ReadChunk(bytes, kept)), reading) << place << ", bit " << bit;
        };
        for (std::size_t place = DefinitionPlace; bytes.find_first_not_of('\0', place) < 30'000; ++place) {
            for (int bit = 0; bit < 8; bit += place < DefinitionPlace + 24 ? 1 : 3) {
                tryChange(place, bit);
            }
        }
        for (std::size_t place = bytes.find_first_not_of('\0', 30'000); place < bytes.size(); ++place) {
            tryChange(place, static_cast<int>(place % 3));
        }
    }
    EXPECT_GT(shared, 100U);  // lengths, hashes, types of substitutions and the like
    EXPECT_GT(different, 500U);
}

}  // namespace
}  // namespace corvina::evtx::test
