// Walking one log whose chunks come and go while its file changes, and finding single events in it.
#include "embedded/log_cursor.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "embedded/embedded_event_log.h"
#include "platform/random_access_file.h"
#include "support/event_log_fixture.h"

namespace corvina::test {
namespace {

using embedded::EventPlace;
using embedded::LogCursor;

class LogCursorTest : public ::testing::TestWithParam<bool> {
  protected:
    LogCursor Open(std::size_t events) {
        EXPECT_EQ(WriteLog(Path, NumberedEvents(events)), 0U);
        std::uint32_t error = 0;
        auto selection = std::make_shared<xpath::Selection>();
        selection->Select(0, xpath::Filter::Parse(L"*[System[EventID != 2]]", 0));
        return LogCursor(Logs.Open(Path, error), std::move(selection), GetParam());
    }

    TemporaryFolder Folder;
    std::filesystem::path Path = Folder.Path() / "log.evtx";
    embedded::LogCache Logs;
};

TEST_P(LogCursorTest, ChunksAreReadAgainWhereTheCursorStands) {
    constexpr std::uint64_t Events = 500;
    LogCursor cursor = Open(Events);
    for (std::uint64_t count = 1; count <= Events; ++count) {
        const std::uint64_t id = GetParam() ? Events + 1 - count : count;
        if (id == 2) {
            continue;
        }
        ASSERT_TRUE(cursor.Next());
        cursor.LetGoOfChunk();
        EventPlace place;
        ASSERT_TRUE(cursor.Get(place));
        EXPECT_EQ(place.Record.RecordId, id);
        cursor.LetGoOfChunk();
        EXPECT_EQ(cursor.Time(), FirstTestTime + (id - 1) * 10'000'000);
        cursor.LetGoOfChunk();
    }
    EXPECT_FALSE(cursor.Next());
    EXPECT_FALSE(cursor.Next());
}

// The file of a log that wraps is written over while it is read.
TEST_P(LogCursorTest, EventsThatAreGoneAreNotGivenOut) {
    LogCursor cursor = Open(500);
    ASSERT_TRUE(cursor.Next());
    cursor.LetGoOfChunk();
    const std::filesystem::path other = Folder.Path() / "other.evtx";
    ASSERT_EQ(WriteLog(other, NumberedEvents(500), 5000), 0U);
    std::ofstream(Path, std::ios::binary | std::ios::in | std::ios::out)
        << std::ifstream(other, std::ios::binary).rdbuf();
    EventPlace place;
    EXPECT_FALSE(cursor.Get(place));
    cursor.Time();
    while (cursor.Next()) {
        EXPECT_TRUE(cursor.Get(place));
        EXPECT_GE(place.Record.RecordId, 5000U);
    }
}

// Counts the chunks that are read of a file.
class ChunkCountingFile final : public RandomAccessFile {
  public:
    ChunkCountingFile(std::unique_ptr<RandomAccessFile> file, int& chunks) : file_(std::move(file)), chunks_(chunks) {}

    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const override {
        chunks_ += buffer.size() == evtx::ChunkSize ? 1 : 0;
        return file_->ReadAt(offset, buffer);
    }
    std::uint64_t Size() const override { return file_->Size(); }

  private:
    std::unique_ptr<RandomAccessFile> file_;
    int& chunks_;
};

class EventsByRecordId : public ::testing::TestWithParam<bool> {
  protected:
    std::shared_ptr<const embedded::OpenLogFile> Open(const std::filesystem::path& path) {
        std::uint32_t error = 0;
        auto file = evtx::LogFile::Open(
            std::make_unique<ChunkCountingFile>(OpenRandomAccessFile(path, error), ChunksRead), error);
        return std::make_shared<const embedded::OpenLogFile>(std::move(file), embedded::FileFacts(), Learned);
    }
    LogCursor Cursor(std::shared_ptr<const embedded::OpenLogFile> log, const std::wstring& filter) const {
        auto selection = std::make_shared<xpath::Selection>();
        selection->Select(0, xpath::Filter::Parse(filter, 0));
        return LogCursor(std::move(log), std::move(selection), GetParam());
    }
    // Finds an event in the log, which is opened for it, and returns the chunks that this took.
    int ChunksToFind(const std::filesystem::path& path, std::uint64_t recordId) {
        LogCursor cursor = Cursor(Open(path), L"Event/System[EventRecordID=" + std::to_wstring(recordId) + L"]");
        ChunksRead = 0;
        EventPlace place;
        EXPECT_TRUE(cursor.Next() && cursor.Get(place)) << recordId;
        std::wstring xml;
        EXPECT_TRUE(place.Chunk != nullptr && place.Chunk->AppendXml(place.Record, xml));
        EXPECT_NE(xml.find(L">" + std::to_wstring(recordId) + L"</EventRecordID>"), std::wstring::npos);
        return ChunksRead;
    }

    TemporaryFolder Folder;
    std::shared_ptr<embedded::CarriedRecordIds> Learned = std::make_shared<embedded::CarriedRecordIds>();
    int ChunksRead = 0;
};

TEST_P(EventsByRecordId, ComeFromOneChunkWhereverTheyStand) {
    const std::filesystem::path log = Folder.Path() / "log.evtx";
    ASSERT_EQ(WriteLog(log, NumberedEvents(3000), 70), 0U);
    ASSERT_GT(Open(log)->File().Chunks().size(), 8U);
    for (const std::uint64_t recordId : {70U, 1500U, 3069U}) {
        EXPECT_EQ(ChunksToFind(log, recordId), 1) << recordId;
    }
    LogCursor none = Cursor(Open(log), L"Event/System[EventRecordID=69]");
    ChunksRead = 0;
    EXPECT_FALSE(none.Next());
    EXPECT_EQ(ChunksRead, 0);
}

TEST_P(EventsByRecordId, ComeFromOneChunkOfAnExportThatHasBeenReadBefore) {
    const std::filesystem::path log = Folder.Path() / "log.evtx";
    ASSERT_EQ(WriteLog(log, NumberedEvents(3000), 70), 0U);
    const std::filesystem::path exported = Folder.Path() / "exported.evtx";
    embedded::EmbeddedEventLog exporter(Folder.Path(), L"TESTPC");
    ASSERT_TRUE(exporter.EvtExportLog(nullptr, log.wstring().c_str(), nullptr, exported.wstring().c_str(),
                                      EvtExportLogFilePath));
    ASSERT_EQ(Open(exported)->File().OldestRecordId(), 1U);
    // Its chunks are listed under other identifiers, which could lead to the wrong ones.
    EXPECT_GT(ChunksToFind(exported, 1500), 1);
    LogCursor all = Cursor(Open(exported), L"*");
    while (all.Next()) {
    }
    for (const std::uint64_t recordId : {70U, 1500U, 3069U}) {
        EXPECT_EQ(ChunksToFind(exported, recordId), 1) << recordId;
    }
    EXPECT_FALSE(Cursor(Open(exported), L"Event/System[EventRecordID=2]").Next());
}

TEST(LogCacheTest, WhatIsKnownOfALogEndsWithAChangeOfItsFile) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path() / "log.evtx";
    embedded::LogCache logs;
    std::uint32_t error = 0;
    ASSERT_EQ(WriteLog(path, NumberedEvents(500)), 0U);
    const auto layout = logs.Open(path, error)->File().Layout();
    EXPECT_EQ(logs.Open(path, error)->File().Layout(), layout) << "a closed log is walked again";
    ASSERT_EQ(WriteLog(path, NumberedEvents(500), 9), 0U);
    EXPECT_EQ(logs.Open(path, error)->File().OldestRecordId(), 9U);
}

INSTANTIATE_TEST_SUITE_P(BothDirections, EventsByRecordId, ::testing::Bool());
INSTANTIATE_TEST_SUITE_P(BothDirections, LogCursorTest, ::testing::Bool());

}  // namespace
}  // namespace corvina::test
