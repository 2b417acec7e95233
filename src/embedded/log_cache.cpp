#include "embedded/log_cache.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <system_error>

#include "platform/error_codes.h"

namespace corvina::embedded {
namespace {

namespace fs = std::filesystem;

bool CarriesOwnRecordId(const evtx::Chunk& chunk, const evtx::RecordPlace& record) {
    evtx::SystemValues values;
    return chunk.ReadSystem(record, values) && values.EventRecordId == record.RecordId;
}

}  // namespace

bool OpenLogFile::EventsCarryIdsOfRecords() const {
    if (!recordIds_->AreThoseOfRecords) {
        bool are = true;
        const std::size_t count = file_->Chunks().size();
        for (const std::size_t index : {std::size_t{0}, count - 1}) {
            const std::shared_ptr<const evtx::Chunk> chunk = index < count ? file_->ReadChunk(index) : nullptr;
            if (chunk == nullptr || chunk->Records().empty()) {
                continue;
            }
            const auto records = chunk->Records();
            are &= CarriesOwnRecordId(*chunk, index == 0 ? records.front() : records.back());
        }
        if (file_->HasReadFailed()) {
            return false;
        }
        recordIds_->AreThoseOfRecords = are;
    }
    return *recordIds_->AreThoseOfRecords;
}

std::pair<std::size_t, std::size_t> OpenLogFile::ChunksOf(const xpath::Selection& selection) const {
    const auto recordIds = selection.RecordIds();
    if (recordIds && EventsCarryIdsOfRecords()) {
        return file_->Layout()->ChunksWithRecordIds(recordIds->first, recordIds->second);
    }
    return {0, file_->Chunks().size()};
}

bool OpenLogFile::MayHold(std::size_t chunkIndex, const xpath::Selection& selection) const {
    if (!selection.RecordIds()) {
        return true;
    }
    if (EventsCarryIdsOfRecords()) {
        const evtx::ChunkPlace& chunk = file_->Chunks()[chunkIndex];
        return selection.MayMatchRecordIds(chunk.FirstRecordId, chunk.LastRecordId);
    }
    if (recordIds_->Chunks.empty() || !recordIds_->Chunks[chunkIndex]) {
        return true;
    }
    const RecordIdRange& range = *recordIds_->Chunks[chunkIndex];
    return selection.MayMatchRecordIds(range.First, range.Last);
}

// In most logs the first record of each chunk tells that there is nothing to learn.
void OpenLogFile::NoteRecordIds(std::size_t chunkIndex, const evtx::Chunk& chunk, RecordMemory& memory) const {
    const auto records = chunk.Places();
    auto& known = recordIds_->Chunks;
    if (records.empty() || file_->HasReadFailed() || (known.empty() && CarriesOwnRecordId(chunk, records.front()))) {
        return;
    }
    known.resize(file_->Chunks().size());
    if (known[chunkIndex]) {
        return;
    }
    RecordIdRange range{std::numeric_limits<std::uint64_t>::max(), 0};
    for (const evtx::RecordPlace& record : records) {
        RecordValues values(chunk, record, memory);
        if (const auto recordId = xpath::RecordIdOf(values)) {
            range = {std::min(range.First, *recordId), std::max(range.Last, *recordId)};
        }
    }
    known[chunkIndex] = range;
}

// Only when there are twice as many files as the last time: a query opens thousands, one after another.
void LogCache::ForgetClosedFiles() {
    if (open_.size() >= nextForgetting_) {
        std::erase_if(open_, [](const auto& entry) { return entry.second.expired(); });
        nextForgetting_ = 2 * open_.size() + 16;
    }
}

std::shared_ptr<const OpenLogFile> LogCache::Open(const fs::path& path, std::uint32_t& error) {
    ForgetClosedFiles();
    std::error_code pathError;
    const fs::path key = fs::absolute(path, pathError).lexically_normal();
    const std::optional<FileFacts> facts = ReadFileFacts(path);
    const auto known = open_.find(key);
    if (known != open_.end() && facts) {
        std::shared_ptr<const OpenLogFile> log = known->second.lock();
        if (log != nullptr && IsUnchanged(log->Facts(), facts)) {
            error = error::Success;
            return log;
        }
    }
    std::optional<LogKnowledge> knowledge = facts ? known_.Find(key, *facts) : std::nullopt;
    std::shared_ptr<const evtx::LogFile> file =
        evtx::LogFile::Open(path, error, knowledge ? knowledge->Layout : nullptr);
    if (file == nullptr) {
        const fs::path folder = key.parent_path();
        if (error == error::FileNotFound && !fs::is_directory(folder, pathError)) {
            error = error::PathNotFound;
        }
        return nullptr;
    }
    if (!knowledge || file->Layout() != knowledge->Layout) {
        knowledge = {facts.value_or(FileFacts()), file->Layout(), std::make_shared<CarriedRecordIds>()};
        if (facts) {
            known_.Keep(key, *knowledge);
        }
    }
    auto log = std::make_shared<const OpenLogFile>(std::move(file), facts.value_or(FileFacts()),
                                                   std::move(knowledge->RecordIds));
    open_[key] = log;
    return log;
}

}  // namespace corvina::embedded
