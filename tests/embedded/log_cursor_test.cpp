// Walking one log whose chunks come and go while its file changes.
#include "embedded/log_cursor.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

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

INSTANTIATE_TEST_SUITE_P(BothDirections, LogCursorTest, ::testing::Bool());

}  // namespace
}  // namespace corvina::test
