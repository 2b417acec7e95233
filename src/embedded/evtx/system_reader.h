// The System values of an event without its XML: once per template it is found out which instruction holds which value,
// afterwards the values are taken straight from a record's slots.
#pragma once

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/system_field.h"
#include "embedded/evtx/system_values.h"
#include "embedded/evtx/template_store.h"
#include "embedded/evtx/value_list.h"

namespace corvina::evtx {

// Reads the wanted values of the event whose binary XML `reader` stands at, and leaves the others as they are.
// `working` is memory that its owner keeps. `certain` becomes the fields of the wanted ones whose value, or absence, is
// for sure what the XML of the event shows: all of them, but for oddly made events. False when the binary XML is
// invalid.
bool ReadSystemValues(ByteReader reader, TemplateStore& templates, ValueList& working, SystemFieldSet wanted,
                      SystemValues& values, SystemFieldSet& certain);

}  // namespace corvina::evtx
