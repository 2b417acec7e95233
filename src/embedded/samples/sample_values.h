// Makes up the data values of sample events: accounts, programs, addresses and the like of an invented company.
#pragma once

#include <cstdint>
#include <string_view>

#include "embedded/evtx/log_file_writer.h"
#include "embedded/samples/sample_catalog.h"
#include "embedded/samples/sample_random.h"

namespace corvina::samples {

// Fills the part of `value` that its kind uses. `time` is the event's, as a file time; times in values lie before it.
void MakeValue(FieldKind kind, std::uint64_t time, SampleRandom& random, evtx::WriterValue& value);

// The security identifier of the system's own account, and of one of the company's people.
const std::vector<std::byte>& SystemSid();
const std::vector<std::byte>& AccountSid(SampleRandom& random);

}  // namespace corvina::samples
