#include "embedded/log_cursor.h"

#include "embedded/record_values.h"

namespace corvina::embedded {

LogCursor::LogCursor(std::shared_ptr<const OpenLogFile> log, std::shared_ptr<const xpath::Filter> filter,
                     bool newestFirst)
    : log_(std::move(log)), filter_(std::move(filter)), newestFirst_(newestFirst) {
    if (filter_->MatchesNothing()) {
        log_ = nullptr;
    }
}

// The chunk table answers for a record id when the events carry the ids that it lists.
bool LogCursor::MayHoldMatches(std::size_t chunkIndex) const {
    const std::optional<std::uint64_t> recordId = filter_->RecordId();
    if (!recordId) {
        return true;
    }
    const evtx::ChunkPlace& chunk = log_->File().Chunks()[chunkIndex];
    const bool inRange = *recordId >= chunk.FirstRecordId && *recordId <= chunk.LastRecordId;
    return inRange || !log_->EventsCarryRecordIds();
}

bool LogCursor::NextChunk() {
    chunk_ = nullptr;
    recordsDone_ = 0;
    const std::size_t count = log_ == nullptr ? 0 : log_->File().Chunks().size();
    while (chunksDone_ < count) {
        const std::size_t index = newestFirst_ ? count - 1 - chunksDone_ : chunksDone_;
        ++chunksDone_;
        if (MayHoldMatches(index)) {
            chunk_ = log_->File().ReadChunk(index);
            return true;
        }
    }
    return false;
}

bool LogCursor::Matches(const evtx::RecordPlace& record) {
    if (filter_->MatchesEverything()) {
        return true;
    }
    RecordValues values(*chunk_, record, system_, data_);
    return filter_->Matches(values);
}

bool LogCursor::Next(EventPlace& place) {
    while (chunk_ != nullptr || NextChunk()) {
        const auto records = chunk_->Places();
        while (recordsDone_ < records.size()) {
            const evtx::RecordPlace& record =
                newestFirst_ ? records[records.size() - 1 - recordsDone_] : records[recordsDone_];
            ++recordsDone_;
            if (Matches(record) && chunk_->IsSound(record)) {
                place.Chunk = chunk_;
                place.Record = record;
                return true;
            }
        }
        chunk_ = nullptr;
    }
    return false;
}

}  // namespace corvina::embedded
