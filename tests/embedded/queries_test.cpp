// Queries over channels and files, and the events they give.
#include <filesystem>
#include <fstream>

#include "embedded/embedded_log_test.h"

namespace corvina::test {
namespace {

constexpr DWORD ChannelForward = EvtQueryChannelPath;
constexpr DWORD ChannelReverse = EvtQueryChannelPath | EvtQueryReverseDirection;
constexpr DWORD FileForward = EvtQueryFilePath | EvtQueryTolerateQueryErrors;

// Enough events for several chunks.
constexpr std::size_t ManyEvents = 1500;

class QueriesTest : public EmbeddedLogTest {
  protected:
    std::uint32_t ErrorOf(LPCWSTR path, LPCWSTR query, DWORD flags) {
        EXPECT_FALSE(Held(Log->EvtQuery(nullptr, path, query, flags)));
        return Log->GetLastError();
    }
};

TEST_F(QueriesTest, BothDirectionsGiveEveryEventOnce) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(ManyEvents)));
    std::vector<std::uint16_t> expected;
    for (std::size_t id = 1; id <= ManyEvents; ++id) {
        expected.push_back(static_cast<std::uint16_t>(id));
    }
    EXPECT_EQ(EventIds(Query(L"System", nullptr, ChannelForward)), expected);
    EXPECT_EQ(EventIds(Query(L"System", L"*", ChannelForward | EvtQueryForwardDirection)), expected);
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(EventIds(Query(L"System", L"", ChannelReverse)), expected);
}

TEST_F(QueriesTest, BatchesEndWithNoMoreItems) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(12)));
    const EvtHandle query = Query(L"System");
    EVT_HANDLE events[10] = {};
    DWORD returned = 0;
    std::vector<EvtHandle> held;
    for (const DWORD expected : {10u, 2u}) {
        ASSERT_NE(Log->EvtNext(query.Get(), 10, events, INFINITE, 0, &returned), FALSE);
        ASSERT_EQ(returned, expected);
        for (DWORD index = 0; index < returned; ++index) {
            held.push_back(Held(events[index]));
        }
    }
    for (int attempt = 0; attempt < 2; ++attempt) {
        returned = 7;
        EXPECT_EQ(Log->EvtNext(query.Get(), 10, events, INFINITE, 0, &returned), FALSE);
        EXPECT_EQ(Log->GetLastError(), error::NoMoreItems);
        EXPECT_EQ(returned, 0u);
    }
    // Events stay good while others are read and after their query is gone.
    EXPECT_EQ(EventId(held.front()), 1);
    EXPECT_EQ(EventId(held.back()), 12);
    EXPECT_EQ(Log->EvtNext(query.Get(), 0, events, INFINITE, 0, &returned), FALSE);
    EXPECT_EQ(Log->GetLastError(), error::InvalidParameter);
    EXPECT_EQ(Log->EvtNext(query.Get(), 1, nullptr, INFINITE, 0, &returned), FALSE);
    EXPECT_EQ(Log->GetLastError(), error::InvalidParameter);
}

TEST_F(QueriesTest, RecordIdFindsItsEvent) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(ManyEvents), 5000));
    const auto found = [&](const std::wstring& recordId, DWORD flags) {
        return EventIds(Query(L"System", (L"Event/System[EventRecordID=" + recordId + L"]").c_str(), flags));
    };
    for (const std::size_t index : {std::size_t{0}, std::size_t{700}, ManyEvents - 1}) {
        const std::vector<std::uint16_t> expected{static_cast<std::uint16_t>(index + 1)};
        EXPECT_EQ(found(std::to_wstring(5000 + index), ChannelForward), expected);
        EXPECT_EQ(found(std::to_wstring(5000 + index), ChannelReverse), expected);
    }
    for (const wchar_t* missing : {L"4999", L"6500", L"0", L"-5000", L"18446744073709551615"}) {
        EXPECT_TRUE(found(missing, ChannelForward).empty()) << missing;
    }
}

TEST_F(QueriesTest, RecordIdFindsEventsOfALogWithGaps) {
    std::vector<TestEvent> events = NumberedEvents(ManyEvents);
    for (std::size_t index = 0; index < events.size(); ++index) {
        events[index].RecordId = 100000 + 10 * index;
    }
    const std::filesystem::path file = Folder.Path() / "exported.evtx";
    ASSERT_EQ(WriteLog(file, events), 0u);
    const EvtHandle query = Query(file.wstring(), L"Event/System[EventRecordID=107000]", FileForward);
    EXPECT_EQ(EventIds(query), std::vector<std::uint16_t>{701});
}

TEST_F(QueriesTest, FilesAreFoundByEitherSeparator) {
    const std::filesystem::path file = Folder.Path() / "sub folder" / "saved.evtx";
    std::filesystem::create_directories(file.parent_path());
    ASSERT_EQ(WriteLog(file, NumberedEvents(1)), 0u);
    std::wstring path = file.wstring();
    for (const wchar_t separator : {L'/', L'\\'}) {
        std::replace_if(
            path.begin(), path.end(), [](wchar_t c) { return c == L'/' || c == L'\\'; }, separator);
        EXPECT_EQ(Events(Query(path, nullptr, FileForward)).size(), 1u);
    }
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(Folder.Path());
    EXPECT_EQ(Events(Query(L"sub folder/saved.evtx", nullptr, FileForward)).size(), 1u);
    EXPECT_EQ(Events(Query(L".\\sub folder\\saved.evtx", nullptr, FileForward)).size(), 1u);
    std::filesystem::current_path(before);
}

TEST_F(QueriesTest, WhatCannotBeReadHasItsOwnError) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", {}));
    const std::filesystem::path folder = Folder.Path();
    ASSERT_TRUE(WriteTextFile(folder / "empty.evtx", ""));
    ASSERT_TRUE(WriteTextFile(folder / "foreign.evtx", std::string(100000, 'x')));
    ASSERT_TRUE(WriteTextFile(folder / "short.evtx", std::string("ElfFile\0", 8)));
    for (const char* name : {"empty.evtx", "foreign.evtx", "short.evtx"}) {
        EXPECT_EQ(ErrorOf((folder / name).wstring().c_str(), nullptr, FileForward), error::EventLogFileCorrupt) << name;
    }
    EXPECT_EQ(ErrorOf((folder / "missing.evtx").wstring().c_str(), nullptr, FileForward), error::FileNotFound);
    EXPECT_EQ(ErrorOf((folder / "no" / "missing.evtx").wstring().c_str(), nullptr, FileForward), error::PathNotFound);
    EXPECT_EQ(ErrorOf(folder.wstring().c_str(), nullptr, FileForward), error::AccessDenied);
    EXPECT_EQ(ErrorOf(L"Missing", nullptr, 0x1201), error::ChannelNotFound);
    EXPECT_EQ(ErrorOf(L"System", L"*[", ChannelForward), error::InvalidQuery);
    EXPECT_EQ(ErrorOf(nullptr, nullptr, ChannelForward), error::InvalidParameter);
    for (const DWORD flags : {0u, 3u, 0x301u, 0x1000u, 0x8001u}) {
        EXPECT_EQ(ErrorOf(L"System", nullptr, flags), error::InvalidParameter) << flags;
    }
}

TEST_F(QueriesTest, InformationNamesWhatWasAskedFor) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"Vendor-Tool/Admin", {}));
    const EvtHandle query = Query(L"vendor-tool/admin", nullptr, ChannelForward);
    const auto info = [&](int property) {
        return Filled<BYTE>([&](DWORD size, BYTE* buffer, DWORD* used) {
            return Log->EvtGetQueryInfo(query.Get(), static_cast<EVT_QUERY_PROPERTY_ID>(property), size,
                                        reinterpret_cast<EVT_VARIANT*>(buffer), used);
        });
    };
    const std::vector<BYTE> names = info(EvtQueryNames);
    const EVT_VARIANT name = Values(names, 1)[0];
    EXPECT_EQ(name.Type, EvtVarTypeString | EVT_VARIANT_TYPE_ARRAY);
    ASSERT_EQ(name.Count, 1u);
    EXPECT_EQ(std::wstring(name.StringArr[0]), L"vendor-tool/admin");
    const std::vector<BYTE> statuses = info(EvtQueryStatuses);
    const EVT_VARIANT status = Values(statuses, 1)[0];
    EXPECT_EQ(status.Type, EvtVarTypeUInt32 | EVT_VARIANT_TYPE_ARRAY);
    ASSERT_EQ(status.Count, 1u);
    EXPECT_EQ(status.UInt32Arr[0], 0u);
    DWORD used = 0;
    EXPECT_FALSE(Log->EvtGetQueryInfo(query.Get(), EvtQueryPropertyIdEND, 0, nullptr, &used));
    EXPECT_EQ(Log->GetLastError(), error::InvalidParameter);
}

// A file that grows under an open query, as a log does while its computer runs: that query goes on, the next one sees
// what the file has become.
TEST_F(QueriesTest, ChangedFilesAreReadAnew) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(2)));
    const std::filesystem::path path = Store.LogPath(L"localhost", L"System");
    const std::filesystem::path grown = Folder.Path() / "grown.evtx";
    ASSERT_EQ(WriteLog(grown, NumberedEvents(ManyEvents)), 0u);
    EvtHandle before = Query(L"System");
    std::ofstream(path, std::ios::binary | std::ios::in | std::ios::out)
        << std::ifstream(grown, std::ios::binary).rdbuf();
    EXPECT_EQ(Events(Query(L"System")).size(), ManyEvents);
    EXPECT_GE(Events(before).size(), 2u);
    before.Close();
    std::filesystem::remove(path);
    EXPECT_EQ(ErrorOf(L"System", nullptr, ChannelForward), error::ChannelNotFound);
}

TEST_F(QueriesTest, DamageInTheMiddleDoesNotEndALog) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(ManyEvents)));
    const std::filesystem::path path = Store.LogPath(L"localhost", L"System");
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    constexpr std::streamoff InsideTheFirstChunk = 4096 + 20000;
    file.seekp(InsideTheFirstChunk);
    file.write(std::string(3000, '\xAA').data(), 3000);
    file.close();
    const std::vector<std::uint16_t> ids = EventIds(Query(L"System"));
    EXPECT_LT(ids.size(), ManyEvents);
    EXPECT_GT(ids.size(), ManyEvents - 200);
    EXPECT_EQ(ids.front(), 1);
    EXPECT_EQ(ids.back(), ManyEvents);
}

}  // namespace
}  // namespace corvina::test
