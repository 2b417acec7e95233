// Turns the structure of a program into its rendering: everything between two conditions or substitutions becomes one
// literal run of finished XML.
#pragma once

#include <cstddef>

#include "embedded/evtx/program.h"

namespace corvina::evtx {

// Fills `program.Rendering` and `program.Literals`. False when the literals would be longer than `longestLiterals`
// bytes: names are shared in a chunk, so a few bytes of tokens can ask for very much text.
bool MakeRendering(std::size_t longestLiterals, Program& program);

}  // namespace corvina::evtx
