// Makes the tree of an event from its structure and values.
#pragma once

#include <cstdint>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/event_tree.h"
#include "embedded/evtx/template_store.h"
#include "embedded/evtx/value_list.h"

namespace corvina::evtx {

// Reads the event whose binary XML `reader` stands at; `working` is memory that its owner keeps. False when the binary
// XML is invalid, costs more than `budget`, or has more than 256 Ki nodes or pieces of text.
bool ReadEventTree(ByteReader reader, TemplateStore& templates, ValueList& working, std::int64_t budget,
                   EventTree& tree);

}  // namespace corvina::evtx
