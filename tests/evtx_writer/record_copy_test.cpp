// Records that are copied into other chunks say what they said, whatever their templates are.
#include "embedded/evtx/record_copy.h"

#include <cstdlib>
#include <map>

#include "evtx/test_chunk.h"
#include "evtx_writer/writer_fixture.h"

namespace corvina::evtx {
namespace {

using namespace test;

std::filesystem::path SampleFolder() {
    const char* folder = std::getenv("CORVINA_SAMPLES");
    return folder != nullptr ? std::filesystem::path(folder)
                             : std::filesystem::path(CORVINA_SOURCE_DIR) / ".." / "shared" / "evtx-samples";
}

class RecordCopyTest : public WriterTest {
  protected:
    // Copies all records of a chunk to the end of a log, and their XML to the end of a list.
    static void CopyChunk(const Chunk& chunk, LogFileWriter& writer, std::vector<std::wstring>& xml) {
        RecordCopy copy;
        for (const RecordPlace& record : chunk.Records()) {
            std::wstring text;
            if (chunk.AppendXml(record, text)) {
                xml.push_back(text);
                EXPECT_TRUE(chunk.Copy(record, copy));
                EXPECT_EQ(writer.Add(copy), 0U);
            }
        }
    }

    std::vector<std::wstring> CopyLog(const std::filesystem::path& source, const std::filesystem::path& target) {
        std::vector<std::wstring> xml;
        const auto log = Open(source);
        LogFileWriter writer(target);
        for (std::size_t index = 0; index < log->Chunks().size(); ++index) {
            CopyChunk(*log->ReadChunk(index), writer, xml);
        }
        EXPECT_EQ(writer.LeftOut(), 0U);
        EXPECT_EQ(writer.Finish(), 0U);
        return xml;
    }

    // The copy of a log says the same, and its own copy is the same to the byte.
    void ExpectFaithfulCopies(const std::filesystem::path& source) {
        const std::vector<std::wstring> xml = CopyLog(source, Folder / "first.evtx");
        EXPECT_EQ(EventsOf(Folder / "first.evtx"), xml);
        CopyLog(Folder / "first.evtx", Folder / "second.evtx");
        EXPECT_TRUE(BytesOf(Folder / "first.evtx") == BytesOf(Folder / "second.evtx"));
    }

    // The XML of the records of a chunk after they were copied, which must be what it was before.
    std::vector<std::wstring> Copied(TestChunk& testChunk, std::uint64_t leftOut = 0) {
        const Chunk chunk(testChunk.Finish());
        std::vector<std::wstring> xml;
        LogFileWriter writer(Folder / "chunk.evtx");
        CopyChunk(chunk, writer, xml);
        EXPECT_EQ(writer.LeftOut(), leftOut);
        EXPECT_EQ(writer.Finish(), 0U);
        if (leftOut == 0) {
            EXPECT_EQ(EventsOf(Folder / "chunk.evtx"), xml);
            CopyLog(Folder / "chunk.evtx", Folder / "again.evtx");
            EXPECT_TRUE(BytesOf(Folder / "chunk.evtx") == BytesOf(Folder / "again.evtx"));
        }
        return xml;
    }
};

TEST_F(RecordCopyTest, RealLogsAreCopiedFaithfully) {
    std::error_code ignored;
    if (!std::filesystem::is_directory(SampleFolder(), ignored)) {
        GTEST_SKIP() << "no sample logs here";
    }
    std::size_t logs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(SampleFolder())) {
        if (entry.path().extension() == ".evtx") {
            SCOPED_TRACE(entry.path().filename().string());
            ExpectFaithfulCopies(entry.path());
            ++logs;
        }
    }
    EXPECT_GE(logs, 20U);
}

TEST_F(RecordCopyTest, DefinitionsGoAlongIntoEveryChunk) {
    std::vector<WriterEvent> events;
    for (std::uint16_t index = 0; index < 600; ++index) {
        WriterEvent event = EventOf(index, std::wstring(index * 7 % 900, L'x'));
        event.System.EventRecordId = 70'000 + index;
        event.Data.front().Name = L"Shape" + std::to_wstring(index % 5);
        events.push_back(event);
    }
    const std::filesystem::path source = Write(events);
    ExpectFaithfulCopies(source);
    // Stored once a chunk, as in the source: a copy of each definition with each record would take far more room.
    EXPECT_LE(std::filesystem::file_size(Folder / "first.evtx"), std::filesystem::file_size(source) + ChunkSize);

    const auto copy = Open(Folder / "first.evtx");
    ASSERT_GT(copy->Chunks().size(), 3U);
    EXPECT_EQ(copy->OldestRecordId(), 1U);
    EXPECT_EQ(copy->Header().NextRecordId, 601U);
    const auto chunk = copy->ReadChunk(0);
    SystemValues system;
    ASSERT_TRUE(chunk->ReadSystem(chunk->Records()[1], system));
    EXPECT_EQ(system.EventRecordId, 70'001U);
    EXPECT_EQ(chunk->Records()[1].RecordId, 2U);
    EXPECT_EQ(chunk->Records()[1].WrittenTime, events[1].System.TimeCreated);
}

TEST_F(RecordCopyTest, EveryTokenIsCopied) {
    TestChunk chunk;
    Tokens definition(chunk);
    definition.Header()
        .ProcessingInstruction("before", u"one")
        .Open("Event")
        .Attribute("xmlns")
        .Text(u"a")
        .CloseStart();
    definition.Open("Optional", 0).Attribute("a").Text(u"x").Entity("amp").Character(0x41).CloseEmpty();
    definition.Open("Mixed").CloseStart().Text(u"t").CharacterData(u"<&").Character(0x20AC).Entity("lt");
    definition.Slot(1).OptionalSlot(2).End().SlotElement("Repeated", 3).SlotElement("Nested", 4);
    definition.SlotElement("Direct", 5).SlotElement("Empty", 6).End().EndFragment();
    Tokens inner(chunk);
    inner.Header().Open("Inner").CloseStart().Slot(0).End().EndFragment();
    Tokens nested(chunk);
    nested.Header().Instance(chunk.Define(inner), {test::TextValue(u"deep")}).EndFragment();
    Tokens direct(chunk);
    direct.Open("Direct", NoDependencyField).Attribute("b").Text(u"y").CloseStart().Text(u"plain").End().EndFragment();
    const TestValue texts{0x81, Utf16(std::u16string_view(u"r1\0r2\0", 6))};
    Tokens record(chunk);
    record.Header().Instance(chunk.Define(definition), {UInt8Value(1),
                                                        test::TextValue(u"s"),
                                                        NullValue(),
                                                        texts,
                                                        {NestedXmlType, nested.Bytes()},
                                                        {NestedXmlType, direct.Bytes()},
                                                        {NestedXmlType, ""}});
    chunk.AddRecord(1, record.EndFragment());
    Tokens plain(chunk);
    plain.Header()
        .Open("Event", NoDependencyField)
        .CloseStart()
        .TextElement("No", u"template", NoDependencyField)
        .End();
    chunk.AddRecord(2, plain.EndFragment());
    chunk.AddPlainRecord(3);
    const auto xml = Copied(chunk);
    ASSERT_EQ(xml.size(), 3U);
    EXPECT_EQ(xml[0],
              L"<?before one?><Event xmlns='a'><Optional a='x&amp;&#65;'/><Mixed>t<![CDATA[<&]]>&#8364;&lt;s</Mixed>"
              L"<Repeated>r1</Repeated><Repeated>r2</Repeated><Nested><Inner>deep</Inner></Nested>"
              L"<Direct><Direct b='y'>plain</Direct></Direct><Empty></Empty></Event>");
    EXPECT_EQ(xml[1], L"<Event><No>template</No></Event>");
}

// All definitions of a test's chunk have the same identifier, as those of a forged log may.
TEST_F(RecordCopyTest, DefinitionsUnderTheSameIdentifierStayApart) {
    TestChunk chunk;
    for (std::uint64_t id = 1; id <= 6; ++id) {
        Tokens definition(chunk);
        definition.Header().Open("Event").CloseStart().TextElement(id % 2 == 0 ? "Even" : "Odd", u"x").Slot(0).End();
        Tokens record(chunk);
        record.Header().Instance(chunk.Define(definition.EndFragment()), {UInt64Value(id)});
        chunk.AddRecord(id, record.EndFragment());
    }
    const auto xml = Copied(chunk);
    ASSERT_EQ(xml.size(), 6U);
    EXPECT_EQ(xml[2], L"<Event><Odd>x</Odd>3</Event>");
    EXPECT_EQ(xml[3], L"<Event><Even>x</Even>4</Event>");
    // Six equal pairs of definitions were stored as two.
    EXPECT_EQ(BytesOf(Folder / "chunk.evtx").find(Utf16(u"Odd")), BytesOf(Folder / "chunk.evtx").rfind(Utf16(u"Odd")));
}

TEST_F(RecordCopyTest, ABrokenValueThatIsNotShownDoesNotKeepARecordBack) {
    TestChunk chunk;
    Tokens definition(chunk);
    definition.Header().Open("Event").CloseStart().Slot(0).End().EndFragment();
    const std::uint32_t place = chunk.Define(definition);
    for (const std::string& broken :
         {std::string("\x0C\x01"), std::string("\x0F\x02\x01\x00", 4),
          LittleEndian(0x0C, 1) + std::string(5, '\1') + LittleEndian(0xFFFFFFF0, 4) + std::string(8, '\0')}) {
        Tokens record(chunk);
        record.Header().Instance(place, {test::TextValue(u"shown"), {NestedXmlType, broken}}).EndFragment();
        chunk.AddRecord(1, record);
    }
    EXPECT_EQ(Copied(chunk), std::vector<std::wstring>(3, L"<Event>shown</Event>"));
}

TEST_F(RecordCopyTest, ARecordThatIsTooLargeWithoutSharingIsLeftOutAndCounted) {
    // Two definitions, one inside the other, share a text of 40,000 bytes: what stands in front of the inner one is, to
    // the outer one, the beginning of an element.
    TestChunk chunk;
    Tokens shared(chunk);
    shared.Open("D").CloseStart().Text(std::u16string(20'000, u'x')).End();
    const std::string& content = shared.Bytes();
    const std::string outerEnd("\x04\x00", 2);
    const std::string innerHead = std::string("\x0F\x01\x01\x00\x01\xFF\xFF", 7) + LittleEndian(0, 4) +
                                  LittleEndian(chunk.Name("E"), 4) + std::string("\x02\x05\x01", 3) +
                                  LittleEndian(2, 2) + LittleEndian(content.size(), 4);
    Tokens outer(chunk);
    outer.Raw(innerHead).Raw(content).Raw(outerEnd);
    const std::uint32_t outerPlace = chunk.Define(outer);
    Tokens root(chunk);
    root.Header().Open("Event").CloseStart().Slot(0).Slot(1).End().EndFragment();
    const std::uint32_t rootPlace = chunk.Define(root);
    const auto nestedOf = [&](std::uint32_t place) {
        return TestValue{NestedXmlType, Tokens(chunk).Instance(place, {}).EndFragment().Bytes()};
    };
    Tokens record(chunk);
    record.Header().Instance(rootPlace, {nestedOf(outerPlace), nestedOf(outerPlace + 24)}).EndFragment();
    chunk.AddRecord(1, record);
    chunk.AddPlainRecord(2);
    const auto xml = Copied(chunk, 1);
    ASSERT_EQ(xml.size(), 2U);
    EXPECT_GT(xml[0].size(), 40'000U);
    EXPECT_EQ(EventsOf(Folder / "chunk.evtx"), std::vector<std::wstring>{L"<Event>2</Event>"});
}

}  // namespace
}  // namespace corvina::evtx
