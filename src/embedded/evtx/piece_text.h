// The text of the literal pieces of an event's structure.
#pragma once

#include <cstddef>

#include "embedded/evtx/program.h"
#include "embedded/evtx/text_buffer.h"

namespace corvina::evtx {

// Appends the text that a literal piece adds to the content of its element or attribute: texts, CDATA, character and
// entity references. Other pieces add nothing. `texts` is what the piece's place counts from.
void AppendPieceText(const std::byte* texts, const Instruction& piece, TextBuffer<wchar_t>& text);

}  // namespace corvina::evtx
