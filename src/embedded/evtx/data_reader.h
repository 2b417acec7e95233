// The data values of an event and the texts of a forwarded one, read from its structure without making its XML.
#pragma once

#include <vector>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/system_values.h"
#include "embedded/evtx/template_store.h"
#include "embedded/evtx/value_list.h"

namespace corvina::evtx {

// Each reads the event whose binary XML `reader` stands at; `working` is memory that its owner keeps. False when the
// binary XML is invalid or costs more than `budget`, and for the texts also when the event has none.
bool ReadDataValues(ByteReader reader, TemplateStore& templates, ValueList& working, std::int64_t budget,
                    std::vector<DataValue>& values);
bool ReadRenderingTexts(ByteReader reader, TemplateStore& templates, ValueList& working, std::int64_t budget,
                        RenderingInfo& info);

}  // namespace corvina::evtx
