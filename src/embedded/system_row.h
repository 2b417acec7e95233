// An event's System values as the platform's row of EvtSystemPropertyIdEND values.
#pragma once

#include <cstdint>

#include "embedded/evtx/system_values.h"
#include "platform/event_log_types.h"

namespace corvina::embedded {

// Writes the row; absent values are null. `used` receives the needed size in bytes either way. Returns an error code.
std::uint32_t WriteSystemRow(const evtx::SystemValues& values, DWORD bufferSize, void* buffer, DWORD* used);

}  // namespace corvina::embedded
