// A record taken out of its chunk: its binary XML with everything written out that a chunk stores once and refers to by
// offset, so that it can be put into any other chunk. Nothing of the event is interpreted: what a reader would find in
// the record, texts, types and templates, it finds in every copy of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/identifiers.h"
#include "embedded/evtx/byte_reader.h"

namespace corvina::evtx {

// The pieces that a copy consists of.
enum class PortableKind : std::uint8_t {
    Bytes,        // bytes that mean the same in every chunk
    Name,         // a name in UTF-16 bytes, where the chunk has a reference to it
    BeginLength,  // a 32-bit length field; what comes up to its end is counted, and differs from chunk to chunk
    EndLength,
    Template,     // Number: index of the definition that this is an instance of; its values follow
    BeginValues,  // Number: count of the values
    EndValue,     // Number: type byte of the value whose bytes came since the last end
    EndValues,
};

struct PortablePiece {
    PortableKind Kind = PortableKind::Bytes;
    std::uint32_t Number = 0;
    std::string_view Bytes;
};

// Hands out the pieces of a copy.
class PortableReader {
  public:
    explicit PortableReader(std::string_view content) : rest_(content) {}

    // False at the end.
    bool Next(PortablePiece& piece);

  private:
    std::uint32_t Integer();

    std::string_view rest_;
};

// A template definition, without the offsets in front of it.
struct TemplateCopy {
    GuidBytes Identifier{};
    std::string Content;  // pieces
};

using TemplateCopies = std::vector<std::shared_ptr<const TemplateCopy>>;

struct RecordCopy {
    std::uint64_t WrittenTime = 0;  // file time, UTC
    std::string Content;            // pieces
    TemplateCopies Definitions;
};

// Makes copies of the records of one chunk. Definitions are copied once and shared by the copies.
class RecordCopier {
  public:
    explicit RecordCopier(std::span<const std::byte> chunk) : chunk_(chunk) {}

    // `content` is the binary XML of a record that can be rendered. Fails for others, and may fail only for them: a
    // value that no rendering of the record looks at becomes an empty one when it is broken.
    bool Copy(ByteReader content, RecordCopy& copy);

    // The definition at an offset of the chunk; none when it is invalid.
    std::shared_ptr<const TemplateCopy> Definition(std::uint32_t offset);

  private:
    std::shared_ptr<const TemplateCopy> CopyDefinition(std::uint32_t offset);

    std::span<const std::byte> chunk_;
    std::unordered_map<std::uint32_t, std::shared_ptr<const TemplateCopy>> definitions_;
    // What definitions may still cost, in bytes read and made. More than the reader's own allowance for the same
    // definitions, so that what it can render is never refused here.
    std::size_t allowance_ = std::size_t{32} << 20;
};

}  // namespace corvina::evtx
