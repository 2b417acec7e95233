// Asks filters about events in the memory of chunks. Every answer is taken twice, as a query takes it and from the
// whole event alone, and must be the same.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "embedded/evtx/log_file.h"
#include "embedded/evtx/log_file_writer.h"
#include "embedded/xpath/filter.h"

namespace corvina::test {

// The time that filters of these tests count ages up to: 5 March 2024, 14:00 UTC.
inline constexpr std::uint64_t FilterTestNow = 133541208000000000;

// Whether the event is in the filter's result.
bool Matches(const xpath::Filter& filter, const evtx::Chunk& chunk, const evtx::RecordPlace& record);

class FilterLog {
  public:
    // Writes the events to a log and reads it.
    explicit FilterLog(const std::vector<evtx::WriterEvent>& events);

    // The events that a filter lets through, counted from 0; none when the text is not a filter.
    std::optional<std::vector<std::size_t>> Matching(std::wstring_view filter) const;

  private:
    std::vector<std::shared_ptr<const evtx::Chunk>> chunks_;
};

}  // namespace corvina::test
