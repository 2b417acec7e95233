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
    if (log_ != nullptr && !selection_->MatchesNothing()) {
        const auto [begin, end] = log_->ChunksOf(*selection_);
        firstChunk_ = begin;
        chunkCount_ = end - begin;
    }
}

std::size_t LogCursor::CurrentChunk() const {
    return firstChunk_ + (newestFirst_ ? chunkCount_ - chunksDone_ : chunksDone_ - 1);
}

evtx::RecordPlace LogCursor::RecordAt(std::size_t recordsBefore) const {
    const auto records = chunk_->Places();
    return newestFirst_ ? records[records.size() - 1 - recordsBefore] : records[recordsBefore];
}

bool LogCursor::NextChunk() {
    chunk_ = nullptr;
    recordsDone_ = 0;
    insideChunk_ = false;
    while (chunksDone_ < chunkCount_ && !insideChunk_) {
        ++chunksDone_;
        insideChunk_ = log_->MayHold(CurrentChunk(), *selection_);
    }
    if (!HoldChunk()) {
        return false;
    }
    // A filter may look at much less of each event than that.
    if (takesEverything_ || selection_->RecordIds()) {
        log_->NoteRecordIds(CurrentChunk(), *chunk_, memory_);
    }
    return true;
}

// Has the chunk that the cursor is in, if it is in one, in memory.
bool LogCursor::HoldChunk() {
    if (insideChunk_ && chunk_ == nullptr) {
        chunk_ = log_->File().ReadChunk(CurrentChunk());
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
