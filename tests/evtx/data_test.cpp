// The data values of an event and the texts that a forwarding computer has added.
#include <gtest/gtest.h>

#include "evtx/test_chunk.h"

namespace corvina::evtx::test {
namespace {

constexpr int None = NoDependencyField;

using NamesAndTexts = std::vector<std::pair<std::wstring, std::wstring>>;

NamesAndTexts ReadDataOf(TestChunk& testChunk, const Tokens& content) {
    testChunk.AddRecord(1, content);
    const Chunk chunk(testChunk.Finish());
    // What was there before must not show through.
    std::vector<DataValue> values(10, DataValue{L"old", L"old"});
    if (chunk.Records().size() != 1 || !chunk.ReadData(chunk.Records()[0], values)) {
        ADD_FAILURE() << "the record was not read";
    }
    NamesAndTexts result;
    for (const DataValue& value : values) {
        result.emplace_back(value.Name, value.Text);
    }
    return result;
}

TEST(DataReading, EventDataGivesNamedAndUnnamedValues) {
    TestChunk chunk;
    Tokens inner(chunk);
    inner.Header().Open("EventData").Attribute("Name").Text(u"ignored").CloseStart();
    inner.Open("Data").Attribute("Name").Text(u"User").CloseStart().Slot(0).End();
    inner.Open("Data").Attribute("Name").Text(u"Gone").CloseStart().OptionalSlot(1).End();
    inner.SlotElement("Data", 2).SlotElement("Binary", 3).Open("Data").CloseEmpty();
    inner.End().EndFragment();
    Tokens nested(chunk);
    nested.Header().Instance(
        chunk.Define(inner),
        {TextValue(u"a<b"), NullValue(), {0x81, Utf16(std::u16string_view(u"x\0y\0", 4))}, {0x0E, "\x01\xFF"}});
    Tokens outer(chunk);
    outer.Header().Open("Event").CloseStart().Open("System").CloseStart().TextElement("EventID", u"1").End();
    outer.OptionalSlot(0).End().EndFragment();
    Tokens content(chunk);
    content.Header().Instance(chunk.Define(outer), {{NestedXmlType, nested.Bytes()}}).EndFragment();
    EXPECT_EQ(ReadDataOf(chunk, content),
              (NamesAndTexts{{L"User", L"a<b"}, {L"", L"x"}, {L"", L"y"}, {L"Binary", L"01FF"}, {L"", L""}}));
}

TEST(DataReading, OtherSectionsGiveTheirLeavesInOrder) {
    TestChunk chunk;
    Tokens content(chunk);
    content.Header().Open("Event", None).CloseStart();
    content.Open("UserData", None).CloseStart().Open("Outer", None).Attribute("id").Text(u"7").CloseStart();
    content.Text(u"mixed").TextElement("Data", u"1", None).Open("Deep", None).CloseStart();
    content.Open("Leaf", None).CloseStart().Text(u"a").Entity("lt").CharacterData(u"<b").Character(u'c').End();
    content.End().Text(u"mixed").End().End();
    content.TextElement("BinaryEventData", u"0A0B", None);
    content.Open("DebugData", None).CloseStart().TextElement("SequenceNumber", u"9", None).End();
    content.Open("RenderingInfo", None).CloseStart().TextElement("Message", u"m", None).End();
    content.Open("EventData", None).CloseEmpty().End().EndFragment();
    EXPECT_EQ(ReadDataOf(chunk, content),
              (NamesAndTexts{
                  {L"Data", L"1"}, {L"Leaf", L"a<<bc"}, {L"BinaryEventData", L"0A0B"}, {L"SequenceNumber", L"9"}}));
}

TEST(DataReading, RenderingInfoIsReadFromForwardedEventsOnly) {
    TestChunk testChunk;
    Tokens content(testChunk);
    content.Header().Open("Event", None).CloseStart();
    content.Open("EventData", None).CloseStart().TextElement("Message", u"not this", None).End();
    content.Open("RenderingInfo", None).Attribute("Culture").Text(u"de-DE").CloseStart();
    content.TextElement("Message", u"Der Dienst l\u00E4uft.", None).TextElement("Level", u"Informationen", None);
    content.TextElement("Task", u"t", None).TextElement("Opcode", u"o", None).TextElement("Channel", u"c", None);
    content.TextElement("Provider", u"p", None).Open("Keywords", None).CloseStart();
    content.TextElement("Keyword", u"Klassisch", None).TextElement("Keyword", u"Zwei", None);
    content.TextElement("Message", u"nor this", None).End().End().End().EndFragment();
    testChunk.AddRecord(1, content);
    testChunk.AddPlainRecord(2);
    const Chunk chunk(testChunk.Finish());
    ASSERT_EQ(chunk.Records().size(), 2U);
    RenderingInfo info;
    info.Keywords.emplace_back(L"old");
    ASSERT_TRUE(chunk.ReadRenderingInfo(chunk.Records()[0], info));
    EXPECT_EQ(info.Culture, L"de-DE");
    EXPECT_EQ(info.Message, L"Der Dienst l\u00E4uft.");
    EXPECT_EQ(info.Level + info.Task + info.Opcode + info.Channel + info.Provider, L"Informationentocp");
    EXPECT_EQ(info.Keywords, (std::vector<std::wstring>{L"Klassisch", L"Zwei"}));
    EXPECT_FALSE(chunk.ReadRenderingInfo(chunk.Records()[1], info));
    EXPECT_EQ(info.Message, L"");
}

}  // namespace
}  // namespace corvina::evtx::test
