#include "embedded/log_cache.h"

#include <system_error>

#include "platform/error_codes.h"

namespace corvina::embedded {
namespace {

namespace fs = std::filesystem;

bool CarriesRecordId(const evtx::Chunk& chunk, const evtx::RecordPlace& record) {
    evtx::SystemValues values;
    return chunk.ReadSystem(record, values) && values.EventRecordId == record.RecordId;
}

}  // namespace

bool OpenLogFile::EventsCarryRecordIds() const {
    if (!carryRecordIds_) {
        carryRecordIds_ = true;
        const std::size_t count = file_->Chunks().size();
        for (const std::size_t index : {std::size_t{0}, count - 1}) {
            const std::shared_ptr<const evtx::Chunk> chunk = index < count ? file_->ReadChunk(index) : nullptr;
            if (chunk == nullptr || chunk->Records().empty()) {
                continue;
            }
            const auto records = chunk->Records();
            if (!CarriesRecordId(*chunk, index == 0 ? records.front() : records.back())) {
                carryRecordIds_ = false;
            }
        }
    }
    return *carryRecordIds_;
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
    std::shared_ptr<const evtx::LogFile> file = evtx::LogFile::Open(path, error);
    if (file == nullptr) {
        const fs::path folder = key.parent_path();
        if (error == error::FileNotFound && !fs::is_directory(folder, pathError)) {
            error = error::PathNotFound;
        }
        return nullptr;
    }
    auto log = std::make_shared<const OpenLogFile>(std::move(file), facts.value_or(FileFacts()));
    open_[key] = log;
    return log;
}

}  // namespace corvina::embedded
