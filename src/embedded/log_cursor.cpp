#include "embedded/log_cursor.h"

namespace corvina::embedded {
namespace {

class RecordValues : public xpath::EventValues {
  public:
    RecordValues(const evtx::Chunk& chunk, const evtx::RecordPlace& record, evtx::SystemValues& system,
                 std::vector<evtx::DataValue>& data)
        : chunk_(chunk), record_(record), system_(system), data_(data) {}

    const evtx::SystemValues* System() override {
        if (!systemRead_) {
            systemRead_ = true;
            systemSound_ = chunk_.ReadSystem(record_, system_);
        }
        return systemSound_ ? &system_ : nullptr;
    }

    const std::vector<evtx::DataValue>* Data() override {
        if (!dataRead_) {
            dataRead_ = true;
            dataSound_ = chunk_.ReadData(record_, data_);
        }
        return dataSound_ ? &data_ : nullptr;
    }

  private:
    const evtx::Chunk& chunk_;
    const evtx::RecordPlace& record_;
    evtx::SystemValues& system_;
    std::vector<evtx::DataValue>& data_;
    bool systemRead_ = false;
    bool systemSound_ = false;
    bool dataRead_ = false;
    bool dataSound_ = false;
};

}  // namespace

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
        const auto records = chunk_->Records();
        while (recordsDone_ < records.size()) {
            const evtx::RecordPlace& record =
                newestFirst_ ? records[records.size() - 1 - recordsDone_] : records[recordsDone_];
            ++recordsDone_;
            if (Matches(record)) {
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
