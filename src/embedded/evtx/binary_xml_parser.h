// Reads the tokens of binary XML into the structure of a program, checking that they make up well-formed XML: elements
// closed in order, one root, names that XML allows, no attribute twice. Format: the published descriptions of .evtx.
#pragma once

#include <cstdint>
#include <vector>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/program.h"

namespace corvina::evtx {

namespace token {
inline constexpr std::uint8_t EndOfFragment = 0x00;
inline constexpr std::uint8_t OpenElement = 0x01;
inline constexpr std::uint8_t CloseStartTag = 0x02;
inline constexpr std::uint8_t CloseEmptyElement = 0x03;
inline constexpr std::uint8_t EndElement = 0x04;
inline constexpr std::uint8_t Value = 0x05;
inline constexpr std::uint8_t Attribute = 0x06;
inline constexpr std::uint8_t CharacterData = 0x07;
inline constexpr std::uint8_t CharacterReference = 0x08;
inline constexpr std::uint8_t EntityReference = 0x09;
inline constexpr std::uint8_t ProcessingTarget = 0x0A;
inline constexpr std::uint8_t ProcessingData = 0x0B;
inline constexpr std::uint8_t TemplateInstance = 0x0C;
inline constexpr std::uint8_t Substitution = 0x0D;
inline constexpr std::uint8_t OptionalSubstitution = 0x0E;
inline constexpr std::uint8_t FragmentHeader = 0x0F;
inline constexpr std::uint8_t MoreFollow = 0x40;
}  // namespace token

// A name in its chunk: where its text begins, and its length in UTF-16 units.
struct NamePlace {
    std::uint32_t Place = 0;
    std::uint32_t Length = 0;
};

// What is stored around the text of a name: in front of it the next name, hash and length, behind it a zero.
inline constexpr std::size_t NameHeaderSize = 8;
inline constexpr std::size_t NameTerminatorSize = 2;

// The bytes of a reference to a name in a template definition, from Begin up to End of the chunk: with the name itself
// where it is stored right there, and with the lengths of an element and its attributes around it. These are the bytes
// that differ between chunks with the same definition.
struct NameReference {
    std::uint32_t Begin = 0;
    std::uint32_t End = 0;
    std::uint8_t SizeBefore = 0;  // of the lengths, in bytes
    std::uint8_t SizeBehind = 0;
    std::uint32_t Index = 0;  // of the instruction that has the name
};

// Reads a reference to a name, with the name itself when it is stored right behind. False when it leaves the chunk, is
// too long or not a name in XML.
bool ReadName(ByteReader& reader, NamePlace& name);

// Passes the fragment headers at the front. False when one of them is cut off or of an unknown version.
bool SkipFragmentHeaders(ByteReader& reader);

// Parses one element, with what may stand around it, up to the end of the fragment. Fills the structure of `program`
// and its depth; its texts are in the reader's bytes.
bool ParseElements(ByteReader& reader, Program& program);

// The same for the content of a template definition, in which elements carry a dependency identifier.
bool ParseDefinition(ByteReader& reader, Program& program, std::vector<NameReference>& names);

}  // namespace corvina::evtx
