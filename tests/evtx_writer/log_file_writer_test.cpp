// What is written is read back: values, shapes of events, chunks that overflow; and what happens when writing fails.
#include "embedded/evtx/log_file_writer.h"

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

#include "evtx_writer/writer_fixture.h"
#include "platform/error_codes.h"

namespace corvina::evtx {
namespace {

using Kind = WriterValue::Kind;
using Names = std::vector<std::string>;

const std::wstring EventStart = L"<Event xmlns='http://schemas.microsoft.com/win/2004/08/events/event'><System>";

std::vector<std::byte> Bytes(std::initializer_list<unsigned> values) {
    std::vector<std::byte> bytes;
    for (const unsigned value : values) {
        bytes.push_back(static_cast<std::byte>(value));
    }
    return bytes;
}

std::vector<std::byte> SidOf(std::wstring_view text) {
    const auto sid = ParseSid(text);
    return {sid->begin(), sid->end()};
}

WriterValue NumberValue(std::wstring name, Kind kind, std::uint64_t number) {
    WriterValue value;
    value.Name = std::move(name);
    value.Type = kind;
    value.Number = number;
    return value;
}

WriterValue BytesValue(std::wstring name, Kind kind, std::vector<std::byte> bytes) {
    WriterValue value;
    value.Name = std::move(name);
    value.Type = kind;
    value.Bytes = std::move(bytes);
    return value;
}

TEST_F(WriterTest, EveryKindOfValueComesBack) {
    const GuidBytes guid = *ParseGuid(L"{01234567-89AB-CDEF-0123-456789ABCDEF}");
    WriterEvent event = EventOf(1, L"a < b & \u00E4\u20AC \U0001F600");
    event.Data.push_back(TextValue(L"Empty", L""));
    event.Data.push_back(NumberValue(L"UInt32", Kind::UInt32, 4294967295));
    event.Data.push_back(NumberValue(L"UInt64", Kind::UInt64, 18446744073709551615U));
    event.Data.push_back(NumberValue(L"Int32", Kind::Int32, static_cast<std::uint64_t>(-7)));
    event.Data.push_back(NumberValue(L"HexInt32", Kind::HexInt32, 0xC000006D));
    event.Data.push_back(NumberValue(L"HexInt64", Kind::HexInt64, 0x8020000000000000));
    event.Data.push_back(NumberValue(L"True", Kind::Boolean, 1000));
    event.Data.push_back(NumberValue(L"False", Kind::Boolean, 0));
    event.Data.push_back(BytesValue(L"Guid", Kind::Guid, {guid.begin(), guid.end()}));
    event.Data.push_back(BytesValue(L"Sid", Kind::Sid, SidOf(L"S-1-5-21-1-2-3-500")));
    event.Data.push_back(NumberValue(L"Time", Kind::FileTime, 116444736000000001));
    event.Data.push_back(BytesValue(L"Bytes", Kind::Binary, Bytes({0x00, 0xAB, 0xFF})));
    event.Data.push_back(TextValue(L"Last 'one'", L"end"));
    const auto file = Open(Write({event}));
    const auto chunk = file->ReadChunk(0);
    std::vector<DataValue> values;
    ASSERT_EQ(chunk->Records().size(), 1U);
    ASSERT_TRUE(chunk->ReadData(chunk->Records().front(), values));
    const std::vector<std::pair<std::wstring, std::wstring>> expected = {
        {L"Text", L"a < b & \u00E4\u20AC \U0001F600"},
        {L"Empty", L""},
        {L"UInt32", L"4294967295"},
        {L"UInt64", L"18446744073709551615"},
        {L"Int32", L"-7"},
        {L"HexInt32", L"0xc000006d"},
        {L"HexInt64", L"0x8020000000000000"},
        {L"True", L"true"},
        {L"False", L"false"},
        {L"Guid", L"{01234567-89ab-cdef-0123-456789abcdef}"},
        {L"Sid", L"S-1-5-21-1-2-3-500"},
        {L"Time", L"1970-01-01T00:00:00.0000001Z"},
        {L"Bytes", L"00ABFF"},
        {L"Last 'one'", L"end"},
    };
    ASSERT_EQ(values.size(), expected.size());
    for (std::size_t index = 0; index < expected.size(); ++index) {
        EXPECT_EQ(values[index].Name, expected[index].first);
        EXPECT_EQ(values[index].Text, expected[index].second);
    }
}

TEST_F(WriterTest, SystemHoldsWhatIsPresentInThePlatformsOrder) {
    const GuidBytes guid = *ParseGuid(L"{01234567-89AB-CDEF-0123-456789ABCDEF}");
    WriterEvent whole;
    SystemValues& system = whole.System;
    system.ProviderName = L"P&Q";
    system.ProviderGuid = system.ActivityId = system.RelatedActivityId = guid;
    system.EventSourceName = L"Source";
    system.EventId = system.Qualifiers = std::uint16_t{65535};
    system.Version = std::uint8_t{2};
    system.Level = std::uint8_t{255};
    system.Task = std::uint16_t{12544};
    system.Opcode = std::uint8_t{240};
    system.Keywords = 0x8020000000000000;
    system.TimeCreated = 116444736000000000;
    system.EventRecordId = 1ULL << 40;
    system.ProcessId = 4294967295U;
    system.ThreadId = 0U;
    system.Channel = L"Security";
    system.Computer = L"pc.example";
    system.UserSid = SidOf(L"S-1-5-18");

    WriterEvent classic;
    classic.System.ProviderName = L"disk";
    classic.System.EventId = classic.System.Qualifiers = std::uint16_t{7};
    classic.Data = {TextValue(L"", L"one"), TextValue(L"", L"two"), BytesValue(L"", Kind::Binary, Bytes({0x12}))};

    const std::wstring id = L"{01234567-89ab-cdef-0123-456789abcdef}";
    const auto events = EventsOf(Write({whole, classic, WriterEvent()}));
    ASSERT_EQ(events.size(), 3U);
    EXPECT_EQ(
        events[0],
        EventStart + L"<Provider Name='P&amp;Q' Guid='" + id +
            L"' EventSourceName='Source'/><EventID Qualifiers='65535'>65535</EventID><Version>2</Version><Level>255"
            L"</Level><Task>12544</Task><Opcode>240</Opcode><Keywords>0x8020000000000000</Keywords><TimeCreated "
            L"SystemTime='1970-01-01T00:00:00.0000000Z'/><EventRecordID>1099511627776</EventRecordID><Correlation "
            L"ActivityID='" +
            id + L"' RelatedActivityID='" + id +
            L"'/><Execution ProcessID='4294967295' ThreadID='0'/><Channel>Security</Channel><Computer>pc.example"
            L"</Computer><Security UserID='S-1-5-18'/></System><EventData></EventData></Event>");
    EXPECT_EQ(events[1], EventStart +
                             L"<Provider Name='disk'/><EventID Qualifiers='7'>7</EventID><EventRecordID>"
                             L"1099511627777</EventRecordID><Security/></System><EventData><Data>one</Data>"
                             L"<Data>two</Data><Binary>12</Binary></EventData></Event>");
    EXPECT_EQ(events[2], EventStart +
                             L"<Provider/><EventRecordID>1099511627778</EventRecordID><Security/></System>"
                             L"<EventData></EventData></Event>");
}

TEST_F(WriterTest, EventsFlowOverChunksWithoutLoss) {
    std::vector<WriterEvent> events;
    std::wstring expectedTexts;
    for (std::uint16_t index = 0; index < 900; ++index) {
        // Lengths that leave different rests in the chunks; a third of the events have a template of their own.
        WriterEvent event = EventOf(index, std::wstring(index * 7 % 1500, L'x'));
        if (index % 3 == 0) {
            event.Data.push_back(TextValue(L"Extra" + std::to_wstring(index), std::to_wstring(index)));
        }
        events.push_back(event);
    }
    const std::filesystem::path path = Write(events, 5000);
    const auto file = Open(path);
    ASSERT_GT(file->Chunks().size(), 10U);
    EXPECT_TRUE(file->Header().ChecksumValid);
    EXPECT_EQ(file->Header().Flags, 0U);
    EXPECT_EQ(file->Header().NextRecordId, 5900U);
    EXPECT_EQ(file->Header().ChunkCount, file->Chunks().size());
    EXPECT_EQ(file->Header().LastChunk, file->Chunks().size() - 1);
    EXPECT_EQ(file->Size(), FileHeaderSize + file->Chunks().size() * ChunkSize);
    EXPECT_EQ(file->ForeignBytes() + file->ForeignChunks(), 0U);

    std::uint16_t next = 0;
    SystemValues system;
    std::vector<DataValue> data;
    for (std::size_t index = 0; index < file->Chunks().size(); ++index) {
        const auto chunk = file->ReadChunk(index);
        EXPECT_EQ(file->Chunks()[index].FirstRecordId, 5000U + next);
        for (const RecordPlace& record : chunk->Records()) {
            ASSERT_TRUE(chunk->ReadSystem(record, system) && chunk->ReadData(record, data));
            EXPECT_EQ(record.RecordId, 5000U + next);
            EXPECT_EQ(record.WrittenTime, events[next].System.TimeCreated);
            EXPECT_EQ(system.EventId, next);
            ASSERT_EQ(data.size(), events[next].Data.size());
            EXPECT_EQ(data.front().Text, events[next].Data.front().Text);
            EXPECT_EQ(data.back().Text, events[next].Data.back().Text);
            ++next;
        }
        EXPECT_EQ(file->Chunks()[index].LastRecordId, 4999U + next);
    }
    EXPECT_EQ(next, events.size());
    EXPECT_EQ(EventsOf(path).size(), events.size());
}

TEST_F(WriterTest, AnEventMayFillAChunkAndNoMore) {
    // The largest text that is taken must come back whole, at the very end of its chunk.
    std::size_t fits = 0;
    std::size_t tooLong = 40000;
    while (tooLong - fits > 1) {
        const std::size_t length = (fits + tooLong) / 2;
        LogFileWriter writer(Folder / "probe.evtx");
        const std::uint32_t error = writer.Add(EventOf(1, std::wstring(length, L'x')));
        ASSERT_TRUE(error == 0 || error == error::InvalidParameter);
        (error == 0 ? fits : tooLong) = length;
    }
    EXPECT_GT(fits, 30000U);
    const auto events = EventsOf(Write({EventOf(1), EventOf(2, std::wstring(fits, L'x')), EventOf(3)}));
    ASSERT_EQ(events.size(), 3U);
    EXPECT_NE(events[1].find(L">" + std::wstring(fits, L'x') + L"<"), std::wstring::npos);
}

TEST_F(WriterTest, AnEmptyLogIsALog) {
    const std::filesystem::path path = Write({}, 77);
    const auto file = Open(path);
    EXPECT_EQ(file->RecordCount(), 0U);
    EXPECT_EQ(file->Header().NextRecordId, 77U);
    EXPECT_EQ(file->ForeignChunks(), 0U);
    EXPECT_EQ(FileNames(), Names{"written.evtx"});
}

TEST_F(WriterTest, RefusedEventsLeaveTheTargetAsItWas) {
    std::ofstream(Folder / "old.evtx") << "old";
    WriterEvent badGuid = EventOf(1);
    badGuid.Data = {BytesValue(L"", Kind::Guid, Bytes({1, 2}))};
    WriterEvent badSid = EventOf(1);
    badSid.Data = {BytesValue(L"", Kind::Sid, Bytes({1, 2, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0}))};
    WriterEvent badUser = EventOf(1);
    badUser.System.UserSid = Bytes({1});
    WriterEvent manyValues = EventOf(1);
    manyValues.Data.resize(20000);
    WriterEvent longName = EventOf(1);
    longName.Data = {TextValue(std::wstring(70000, L'n'), L"")};
    for (const WriterEvent& event :
         {EventOf(1, std::wstring(33000, L'x')), badGuid, badSid, badUser, manyValues, longName}) {
        LogFileWriter writer(Folder / "old.evtx");
        EXPECT_EQ(writer.Add(EventOf(1)), 0U);
        EXPECT_EQ(writer.Add(event), error::InvalidParameter);
        EXPECT_EQ(writer.Add(EventOf(1)), error::InvalidParameter);
        EXPECT_EQ(writer.Finish(), error::InvalidParameter);
        EXPECT_EQ(FileNames(), Names{"old.evtx"});
    }
    EXPECT_EQ(BytesOf(Folder / "old.evtx"), "old");
}

TEST_F(WriterTest, OnlyAFinishedLogReplacesItsTarget) {
    std::ofstream(Folder / "log.evtx") << "old";
    {
        LogFileWriter abandoned(Folder / "log.evtx");
        EXPECT_EQ(abandoned.Add(EventOf(1)), 0U);
        EXPECT_EQ(FileNames().size(), 2U);
    }
    EXPECT_EQ(FileNames(), Names{"log.evtx"});
    EXPECT_EQ(BytesOf(Folder / "log.evtx"), "old");

    // Two at once do not touch each other's files; the last to finish wins.
    LogFileWriter first(Folder / "log.evtx");
    LogFileWriter second(Folder / "log.evtx", 100);
    EXPECT_EQ(first.Add(EventOf(1)), 0U);
    EXPECT_EQ(second.Add(EventOf(1)), 0U);
    EXPECT_EQ(first.Finish(), 0U);
    EXPECT_EQ(second.Finish(), 0U);
    EXPECT_EQ(second.Finish(), error::InvalidParameter);
    EXPECT_EQ(FileNames(), Names{"log.evtx"});
    EXPECT_EQ(Open(Folder / "log.evtx")->OldestRecordId(), 100U);
}

TEST_F(WriterTest, FailuresOfTheFileSystemAreReported) {
    LogFileWriter nowhere(Folder / "missing" / "log.evtx");
    EXPECT_EQ(nowhere.Add(EventOf(1)), error::PathNotFound);
    EXPECT_EQ(nowhere.Finish(), error::PathNotFound);
    std::filesystem::create_directory(Folder / "folder.evtx");
    LogFileWriter folder(Folder / "folder.evtx");
    EXPECT_EQ(folder.Finish(), error::AccessDenied);
    EXPECT_EQ(FileNames(), Names{"folder.evtx"});
}

#ifndef _WIN32
TEST_F(WriterTest, AFullDiskLeavesNothingBehind) {
    constexpr std::uint32_t DiskFull = 112;
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{600'000, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    std::uint32_t error = 0;
    {
        LogFileWriter writer(Folder / "log.evtx");
        for (std::uint16_t index = 0; index < 2000 && error == 0; ++index) {
            error = writer.Add(EventOf(index, std::wstring(1000, L'x')));
        }
    }
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(error, DiskFull);
    EXPECT_EQ(FileNames(), Names{});
}
#endif

}  // namespace
}  // namespace corvina::evtx
