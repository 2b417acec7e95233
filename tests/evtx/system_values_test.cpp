// System values without the XML: from slots of every fitting type, from literal text, and what is absent.
#include <gtest/gtest.h>

#include "base/identifiers.h"
#include "evtx/test_chunk.h"

namespace corvina::evtx::test {
namespace {

constexpr std::uint64_t SomeTime = 133541176291234567;  // 2024-03-05T13:07:09.1234567Z
const std::string SomeGuid("\x33\x22\x11\x00\x55\x44\x77\x66\x88\x99\xAA\xBB\xCC\xDD\xEE\xFF", 16);
const std::string SystemSid("\x01\x01\x00\x00\x00\x00\x00\x05\x12\x00\x00\x00", 12);

Tokens SystemDefinition(TestChunk& chunk) {
    Tokens tokens(chunk);
    tokens.Header().Open("Event").CloseStart().Open("System").CloseStart();
    tokens.Open("Provider")
        .Attribute("Name")
        .Text(u"Source")
        .Attribute("Guid")
        .Text(u"{00112233-4455-6677-8899-AABBCCDDEEFF}");
    tokens.Attribute("EventSourceName").OptionalSlot(0).CloseEmpty();
    tokens.Open("EventID").Attribute("Qualifiers").OptionalSlot(1).CloseStart().OptionalSlot(2).End();
    tokens.Open("Version").CloseStart().OptionalSlot(3).End();
    tokens.Open("Level").CloseStart().OptionalSlot(4).End();
    tokens.Open("Task", 5).CloseStart().OptionalSlot(5).End();
    tokens.Open("Opcode").CloseStart().OptionalSlot(6).End();
    tokens.Open("Keywords").CloseStart().OptionalSlot(7).End();
    tokens.Open("TimeCreated").Attribute("SystemTime").OptionalSlot(8).CloseEmpty();
    tokens.Open("EventRecordID").CloseStart().OptionalSlot(9).End();
    tokens.Open("Correlation").Attribute("ActivityID").OptionalSlot(10);
    tokens.Attribute("RelatedActivityID").OptionalSlot(11).CloseEmpty();
    tokens.Open("Execution")
        .Attribute("ProcessID")
        .OptionalSlot(12)
        .Attribute("ThreadID")
        .OptionalSlot(13)
        .CloseEmpty();
    tokens.TextElement("Channel", u"Sys").Open("Computer").CloseStart().Text(u"PC-").Slot(14).End();
    tokens.Open("Security").Attribute("UserID").OptionalSlot(15).CloseEmpty();
    return tokens.End().End().EndFragment();
}

SystemValues ReadOnly(TestChunk& testChunk) {
    const Chunk chunk(testChunk.Finish());
    SystemValues values;
    values.Channel = L"left from before";
    values.UserSid.resize(3);
    if (chunk.Records().size() == 1) {
        EXPECT_TRUE(chunk.ReadSystem(chunk.Records()[0], values));
    } else {
        ADD_FAILURE() << "the record was not found";
    }
    return values;
}

SystemValues ReadInstance(const std::vector<TestValue>& slots) {
    TestChunk chunk;
    Tokens content(chunk);
    content.Header().Instance(chunk.Define(SystemDefinition(chunk)), slots).EndFragment();
    chunk.AddRecord(1, content);
    return ReadOnly(chunk);
}

std::string Bytes(const std::optional<GuidBytes>& guid) {
    return guid ? std::string(reinterpret_cast<const char*>(guid->data()), guid->size()) : "";
}

std::string Bytes(const std::vector<std::byte>& bytes) {
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

void ExpectAllPresent(const SystemValues& values) {
    EXPECT_EQ(values.ProviderName, L"Source");
    EXPECT_EQ(Bytes(values.ProviderGuid), SomeGuid);
    EXPECT_EQ(values.EventSourceName, L"Classic");
    EXPECT_EQ(values.EventId, 7036);
    EXPECT_EQ(values.Qualifiers, 16384);
    EXPECT_EQ(values.Version, 2);
    EXPECT_EQ(values.Level, 4);
    EXPECT_EQ(values.Task, 12544);
    EXPECT_EQ(values.Opcode, 240);
    EXPECT_EQ(values.Keywords, 0x8020000000000000);
    EXPECT_EQ(values.TimeCreated, SomeTime);
    EXPECT_EQ(values.EventRecordId, 0x100000001);
    EXPECT_EQ(Bytes(values.ActivityId), SomeGuid);
    EXPECT_EQ(Bytes(values.RelatedActivityId), SomeGuid);
    EXPECT_EQ(values.ProcessId, 4U);
    EXPECT_EQ(values.ThreadId, 0xFFFFFFFF);
    EXPECT_EQ(values.Channel, L"Sys");
    EXPECT_EQ(values.Computer, L"PC-1");
    EXPECT_EQ(Bytes(values.UserSid), SystemSid);
}

TEST(SystemValuesReading, TakesTypedValuesFromSlots) {
    ExpectAllPresent(ReadInstance({TextValue(std::u16string_view(u"Classic\0", 8)),
                                   UInt16Value(16384),
                                   UInt16Value(7036),
                                   UInt8Value(2),
                                   UInt8Value(4),
                                   UInt16Value(12544),
                                   UInt8Value(240),
                                   {0x15, LittleEndian(0x8020000000000000, 8)},
                                   {0x11, LittleEndian(SomeTime, 8)},
                                   UInt64Value(0x100000001),
                                   {0x0F, SomeGuid},
                                   {0x0F, SomeGuid},
                                   UInt32Value(4),
                                   UInt32Value(0xFFFFFFFF),
                                   UInt8Value(1),
                                   {0x13, SystemSid}}));
}

TEST(SystemValuesReading, TakesTextAndOtherTypesAsWell) {
    const std::u16string_view guid = u"{00112233-4455-6677-8899-aabbccddeeff}";
    ExpectAllPresent(ReadInstance({{0x02, "Classic"},
                                   TextValue(u"0x4000"),
                                   UInt64Value(7036),
                                   {0x0D, LittleEndian(2, 4)},
                                   TextValue(u" 4 "),
                                   TextValue(u"12544"),
                                   TextValue(u"240"),
                                   TextValue(u"0x8020000000000000"),
                                   TextValue(u"2024-03-05T13:07:09.123456700Z"),
                                   TextValue(u"4294967297"),
                                   TextValue(guid),
                                   TextValue(guid),
                                   {0x10, LittleEndian(4, 8)},
                                   TextValue(u"4294967295"),
                                   TextValue(u"1"),
                                   TextValue(u"S-1-5-18")}));
}

TEST(SystemValuesReading, NullAndUnfitValuesAreAbsent) {
    const SystemValues null = ReadInstance(std::vector<TestValue>(16));
    EXPECT_EQ(null.EventSourceName, L"");
    EXPECT_FALSE(null.EventId || null.Qualifiers || null.Version || null.Level || null.Task || null.Opcode ||
                 null.Keywords || null.TimeCreated || null.EventRecordId || null.ActivityId || null.RelatedActivityId ||
                 null.ProcessId || null.ThreadId);
    EXPECT_TRUE(null.UserSid.empty());
    EXPECT_EQ(null.Channel, L"Sys");

    const std::vector<TestValue> unfit = {NullValue(),
                                          UInt32Value(0x10000),
                                          {0x07, LittleEndian(0xFFFFFFFF, 4)},
                                          UInt16Value(256),
                                          TextValue(u"high"),
                                          TextValue(u""),
                                          TextValue(u"0x"),
                                          TextValue(u"99999999999999999999"),
                                          TextValue(u"2024-02-30T00:00:00Z"),
                                          TextValue(u"-1"),
                                          {0x0F, "short"},
                                          TextValue(u"{00112233}"),
                                          {0x0C, LittleEndian(0, 8)},
                                          {0x88, ""},
                                          NullValue(),
                                          {0x13, "\x01"}};
    const SystemValues values = ReadInstance(unfit);
    EXPECT_FALSE(values.EventId || values.Qualifiers || values.Version || values.Level || values.Task ||
                 values.Opcode || values.Keywords || values.TimeCreated || values.EventRecordId || values.ActivityId ||
                 values.RelatedActivityId || values.ThreadId);
    EXPECT_TRUE(values.UserSid.empty());
    EXPECT_EQ(values.Computer, L"PC-");
}

TEST(SystemValuesReading, TakesLiteralValuesOfARecordWithoutTemplate) {
    TestChunk chunk;
    Tokens content(chunk);
    constexpr int None = NoDependencyField;
    content.Header().Open("Event", None).CloseStart().Open("System", None).CloseStart();
    content.Open("Provider", None).Attribute("Name").Text(u"R").Character(u'&').Text(u"D").CloseEmpty();
    content.TextElement("EventID", u"5", None).TextElement("Keywords", u"0x80000000000000", None);
    content.Open("TimeCreated", None).Attribute("SystemTime").Text(u"2021-11-19T16:52:33Z").CloseEmpty();
    // Only what is in System counts, and only under its own element.
    content.Open("Execution", None).Attribute("UserID").Text(u"S-1-5-18").CloseStart().TextElement("Level", u"1", None);
    content.End().End().TextElement("Task", u"3", None).End().EndFragment();
    chunk.AddRecord(1, content);
    const SystemValues values = ReadOnly(chunk);
    EXPECT_EQ(values.ProviderName, L"R&D");
    EXPECT_EQ(values.EventId, 5);
    EXPECT_EQ(values.Keywords, 0x80000000000000U);
    EXPECT_EQ(values.TimeCreated, 132818143530000000U);
    EXPECT_FALSE(values.Level || values.Task);
    EXPECT_TRUE(values.UserSid.empty());
    EXPECT_EQ(values.Channel, L"");
}

}  // namespace
}  // namespace corvina::evtx::test
