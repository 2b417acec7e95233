// What a template definition says, whichever chunk it is stored in: its bytes without the offsets of names and the
// lengths that depend on where names are stored, and the names themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "embedded/evtx/binary_xml_parser.h"
#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/program.h"

namespace corvina::evtx {

class DefinitionForm {
  public:
    // Of a valid definition: `content` stands at its content, `contentEnd` is where the parser stopped, `names` and
    // `program` are what it found.
    DefinitionForm(const ByteReader& content, std::size_t contentEnd, std::span<const NameReference> names,
                   const Program& program);

    // Whether the definition whose content `content` stands at is valid as well and its program would be the same.
    // Exact: everything that the parser takes notice of is compared.
    bool IsFormOf(ByteReader content) const;

  private:
    // A run of bytes that is the same in every chunk, and a reference to a name behind it.
    struct Part {
        std::uint32_t RunSize = 0;
        std::uint16_t NameSize = 0;   // in the pattern
        std::uint8_t SizeBefore = 0;  // of lengths around the reference, in bytes
        std::uint8_t SizeBehind = 0;
    };

    static bool PassRun(ByteReader& content, const std::byte* run, std::size_t size);
    static bool PassName(ByteReader& content, const std::byte* name, const Part& part);

    std::vector<Part> parts_;
    std::vector<std::byte> pattern_;  // the runs and names, each name with its length in front, as chunks store it
    std::size_t lastRunSize_ = 0;
    bool takesAll_ = false;  // the parser stopped where the definition ends, and might have gone on otherwise
};

}  // namespace corvina::evtx
