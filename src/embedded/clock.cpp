#include "embedded/clock.h"

#include <chrono>

#include "base/calendar.h"

namespace corvina::embedded {

std::uint64_t CurrentFileTime() {
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, FileTimeTicksPerSecond>>;
    const auto sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
    return UnixEpochAsFileTime + static_cast<std::uint64_t>(std::chrono::duration_cast<Ticks>(sinceUnixEpoch).count());
}

}  // namespace corvina::embedded
