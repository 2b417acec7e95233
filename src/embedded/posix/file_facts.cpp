#include "embedded/file_facts.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "base/calendar.h"

namespace corvina::embedded {
namespace {

constexpr std::uint32_t ReadOnlyAttribute = 0x1;
constexpr std::uint32_t ArchiveAttribute = 0x20;

std::uint64_t FileTimeOf(const statx_timestamp& time) {
    constexpr std::uint32_t NanosecondsPerTick = 100;
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(UnixEpochAsFileTime) +
                                      time.tv_sec * static_cast<std::int64_t>(FileTimeTicksPerSecond)) +
           time.tv_nsec / NanosecondsPerTick;
}

}  // namespace

std::optional<FileFacts> ReadFileFacts(const std::filesystem::path& path) {
    struct statx status {};
    if (statx(AT_FDCWD, path.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
        return std::nullopt;
    }
    FileFacts facts;
    facts.Size = status.stx_size;
    // Some file systems do not keep the time of creation; the last write is the nearest that is certainly known.
    facts.CreationTime = FileTimeOf((status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_mtime);
    facts.LastAccessTime = FileTimeOf(status.stx_atime);
    facts.LastWriteTime = FileTimeOf(status.stx_mtime);
    facts.Attributes = ArchiveAttribute | ((status.stx_mode & S_IWUSR) != 0 ? 0 : ReadOnlyAttribute);
    facts.Volume = std::uint64_t{status.stx_dev_major} << 32 | status.stx_dev_minor;
    facts.Index = status.stx_ino;
    return facts;
}

}  // namespace corvina::embedded
