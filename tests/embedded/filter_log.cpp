#include "embedded/filter_log.h"

#include <gtest/gtest.h>

#include "embedded/record_values.h"
#include "support/event_log_fixture.h"

namespace corvina::test {

bool Matches(const xpath::Filter& filter, const evtx::Chunk& chunk, const evtx::RecordPlace& record) {
    embedded::RecordMemory memory;
    embedded::RecordValues values(chunk, record, memory);
    const bool matches = filter.Matches(values);
    evtx::EventTree tree;
    EXPECT_TRUE(chunk.ReadTree(record, tree));
    EXPECT_EQ(filter.MatchesTree(tree), matches);
    return matches;
}

FilterLog::FilterLog(const std::vector<evtx::WriterEvent>& events) {
    const TemporaryFolder folder;
    evtx::LogFileWriter writer(folder.Path() / "events.evtx");
    for (const evtx::WriterEvent& event : events) {
        EXPECT_EQ(writer.Add(event), 0U);
    }
    EXPECT_EQ(writer.Finish(), 0U);
    std::uint32_t error = 0;
    const auto file = evtx::LogFile::Open(folder.Path() / "events.evtx", error);
    EXPECT_NE(file, nullptr) << error;
    for (std::size_t index = 0; file != nullptr && index < file->Chunks().size(); ++index) {
        chunks_.push_back(file->ReadChunk(index));
    }
}

std::optional<std::vector<std::size_t>> FilterLog::Matching(std::wstring_view text) const {
    const auto filter = xpath::Filter::Parse(text, FilterTestNow);
    if (filter == nullptr) {
        return std::nullopt;
    }
    std::vector<std::size_t> matching;
    std::size_t count = 0;
    for (const auto& chunk : chunks_) {
        for (const evtx::RecordPlace& record : chunk->Records()) {
            if (Matches(*filter, *chunk, record)) {
                matching.push_back(count);
            }
            ++count;
        }
    }
    return matching;
}

}  // namespace corvina::test
