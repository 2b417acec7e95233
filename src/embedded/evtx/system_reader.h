// The System values of an event without its XML: once per template it is found out which instruction holds which value,
// afterwards the values are taken straight from a record's slots.
#pragma once

#include <vector>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/system_values.h"
#include "embedded/evtx/template_store.h"

namespace corvina::evtx {

// Reads the event whose binary XML `reader` stands at. `working` is memory that its owner keeps. False when the binary
// XML is invalid.
bool ReadSystemValues(ByteReader reader, TemplateStore& templates, std::vector<Value>& working, SystemValues& values);

}  // namespace corvina::evtx
