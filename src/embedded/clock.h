// The time of day.
#pragma once

#include <cstdint>

namespace corvina::embedded {

// Now as a file time: 100 ns since 1601, UTC.
std::uint64_t CurrentFileTime();

}  // namespace corvina::embedded
