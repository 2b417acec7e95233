#include "embedded/log_cursor.h"

#include <utility>

namespace corvina::embedded {
namespace {

bool IsSame(const evtx::RecordPlace& left, const evtx::RecordPlace& right) {
    return left.Offset == right.Offset && left.Size == right.Size && left.RecordId == right.RecordId &&
           left.WrittenTime == right.WrittenTime;
}

}  // namespace

LogCursor::LogCursor(std::shared_ptr<const OpenLogFile> log, std::shared_ptr<const xpath::Selection> selection,
                     bool newestFirst)
    : log_(std::move(log)),
      selection_(std::move(selection)),
      newestFirst_(newestFirst),
      takesEverything_(selection_->MatchesEverything()) {
    if (selection_->MatchesNothing()) {
        log_ = nullptr;
    }
}

std::size_t LogCursor::ChunkIndex(std::size_t chunksBefore) const {
    return newestFirst_ ? log_->File().Chunks().size() - 1 - chunksBefore : chunksBefore;
}

evtx::RecordPlace LogCursor::RecordAt(std::size_t recordsBefore) const {
    const auto records = chunk_->Places();
    return newestFirst_ ? records[records.size() - 1 - recordsBefore] : records[recordsBefore];
}

// The chunk table answers for record ids when the events carry the ids that it lists.
bool LogCursor::MayHoldMatches(std::size_t chunkIndex) const {
    const evtx::ChunkPlace& chunk = log_->File().Chunks()[chunkIndex];
    return selection_->MayMatchRecordIds(chunk.FirstRecordId, chunk.LastRecordId) || !log_->EventsCarryRecordIds();
}

bool LogCursor::NextChunk() {
    chunk_ = nullptr;
    recordsDone_ = 0;
    insideChunk_ = false;
    const std::size_t count = log_ == nullptr ? 0 : log_->File().Chunks().size();
    while (chunksDone_ < count && !insideChunk_) {
        insideChunk_ = MayHoldMatches(ChunkIndex(chunksDone_));
        ++chunksDone_;
    }
    return HoldChunk();
}

// Has the chunk that the cursor is in, if it is in one, in memory.
bool LogCursor::HoldChunk() {
    if (insideChunk_ && chunk_ == nullptr) {
        chunk_ = log_->File().ReadChunk(ChunkIndex(chunksDone_ - 1));
    }
    return insideChunk_;
}

bool LogCursor::Matches(const evtx::RecordPlace& record) {
    if (takesEverything_) {
        return true;
    }
    RecordValues values(*chunk_, record, memory_);
    return selection_->Matches(values);
}

bool LogCursor::Next() {
    bool inside = HoldChunk() || NextChunk();
    while (inside) {
        const std::size_t count = chunk_->Places().size();
        while (recordsDone_ < count) {
            record_ = RecordAt(recordsDone_);
            ++recordsDone_;
            if (Matches(record_) && chunk_->IsSound(record_)) {
                return true;
            }
        }
        inside = NextChunk();
    }
    return false;
}

bool LogCursor::Get(EventPlace& place) {
    if (!HoldChunk() || recordsDone_ > chunk_->Places().size() || !IsSame(RecordAt(recordsDone_ - 1), record_)) {
        return false;
    }
    place.Chunk = chunk_;
    place.Record = record_;
    return true;
}

std::uint64_t LogCursor::Time() {
    HoldChunk();
    RecordValues values(*chunk_, record_, memory_);
    const xpath::SystemPart system = values.System(evtx::SystemFieldSet::Of(evtx::SystemField::TimeCreated));
    return system.Values == nullptr ? record_.WrittenTime : system.Values->TimeCreated.value_or(record_.WrittenTime);
}

}  // namespace corvina::embedded
