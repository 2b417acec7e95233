// Where template definitions stand: a record names one by its offset in the chunk, and the first record that uses it
// carries it in its own bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "base/identifiers.h"
#include "embedded/evtx/byte_reader.h"

namespace corvina::evtx {

struct TemplateDefinition {
    GuidBytes Identifier{};
    ByteReader Content;  // stands at the definition's binary XML and ends with it
};

// The definition at that offset of a chunk; none if it reaches beyond the chunk or its content has more than `most`
// bytes.
std::optional<TemplateDefinition> FindTemplateDefinition(std::span<const std::byte> chunk, std::uint32_t offset,
                                                         std::size_t most);

// Reads the head of a template instance, behind its token: the offset of its definition. False when it is cut short.
bool ReadInstanceHead(ByteReader& reader, std::uint32_t& offset);

// Passes the definition of the instance whose head has just been read, if the record carries it here. It must be one
// that FindTemplateDefinition finds. False when it reaches beyond the record.
bool PassOwnDefinition(ByteReader& reader, std::uint32_t offset);

}  // namespace corvina::evtx
