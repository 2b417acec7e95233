// The compiled form of a piece of binary XML: a flat list of instructions in document order, which refer to names and
// texts by place. Those of a piece that is run only once stay where they are in the chunk. The program of a template
// has copies of its own, so that it can be run for other chunks with the same template as well.
//
// A program has two lists. The structure has every element, attribute and text, for readers who want values. The
// rendering has the same conditions and substitutions, but everything between two of them is one literal run of
// finished XML, so that writing an event's XML is a copy of some literals and the conversion of its values.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "embedded/evtx/system_field.h"

namespace corvina::evtx {

// Elements may be nested this deep, over all pieces of an event together.
inline constexpr std::uint32_t MaximumDepth = 64;

// What one event may cost, about one for each character of its XML. Nested templates and repeated elements multiply, so
// that a record of a few bytes could otherwise ask for gigabytes.
inline constexpr std::int64_t LargestEvent = std::int64_t{4} << 20;

// The cost of the values of an instance, and of substituting one value: the longest text that bytes can become is six
// characters for each, an escaped 8-bit text.
inline constexpr std::int64_t InstanceValueCost = 4;
inline constexpr std::int64_t SubstitutionCost = 32;
constexpr std::int64_t ValueCost(std::uint32_t size) {
    return 6 * std::int64_t{size};
}

enum class Operation : std::uint8_t {
    SkipIfNull,       // goes on at End when the value of Slot is null
    Element,          // Slot, Content: what the content is substituted from; End; Place, Length: the name
    EndStartTag,      // ">"
    EndEmptyElement,  // "/>"
    EndElement,       // "</name>"
    Attribute,        // the same as for an element
    EndAttribute,
    Text,              // Place, Length: UTF-16 text
    CharacterData,     // the same, as a CDATA section
    Character,         // Place: the code of a character reference
    Entity,            // Place, Length: the name
    ProcessingTarget,  // Place, Length: the name
    ProcessingData,    // Place, Length: UTF-16 text
    Substitution,      // Slot
    Literal,           // in a rendering: nothing but its literal
};

// How an element or an attribute depends on the values that are substituted in its content.
enum class ContentKind : std::uint8_t {
    Fixed,        // not at all
    Substituted,  // repeated for each item when Slot holds an array
    Optional,     // the same, and left out when Slot is null
};

struct Instruction {
    Operation Code = Operation::Literal;
    ContentKind Content = ContentKind::Fixed;
    std::uint8_t Depth = 0;        // how many elements are open around it
    bool InAttribute : 1 = false;  // of a substitution
    bool Ascii : 1 = false;        // of a literal
    std::uint16_t Slot = 0;
    std::uint16_t End = 0;  // index of the instruction after the whole element or attribute
    // In a structure: names and texts in the program's Texts, Length in UTF-16 units. In a rendering: the literal in
    // front of what the instruction does, in the program's Literals, Length in bytes.
    std::uint32_t Place = 0;
    std::uint32_t Length = 0;
};

// Programs are long lists that are run again and again.
static_assert(sizeof(Instruction) == 16);

using InstructionList = std::vector<Instruction>;

// Where a value of an event's System part stands in the structure.
struct SystemPlace {
    SystemField Field = SystemField::ProviderName;
    std::uint8_t DependencyCount = 0;  // left out when the value of one of these slots is null
    std::array<std::uint16_t, 2> Dependencies{};
    bool IsRepeated = false;  // its element is there once for each item when the value of RepeatSlot is an array
    std::uint16_t RepeatSlot = 0;
    std::uint32_t Begin = 0;  // the content: instructions from Begin up to End
    std::uint32_t End = 0;
};

// The places of some values of the System part.
struct SystemPlan {
    SystemFieldSet Wanted;
    std::vector<SystemPlace> Places;
    std::size_t SlotCount = 0;  // the slots that they need, from the first on
};

// The places of all values of the System part.
struct SystemLayout {
    std::vector<SystemPlace> Places;
    std::vector<SystemPlan> Plans;  // for the sets that were asked for
    // There is nothing else that could be a System value: one System element, no repeated or nested parts in it, names
    // without prefixes. All templates in the wild are so.
    bool IsPlain = false;
};

struct Program {
    Program() = default;
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // The name or text of an instruction of the structure that has one, UTF-16.
    std::span<const std::byte> TextOf(const Instruction& instruction) const {
        return {Texts + instruction.Place, 2 * std::size_t{instruction.Length}};
    }

    InstructionList Structure;
    const std::byte* Texts = nullptr;  // where places in the structure count from: the chunk, or OwnTexts
    std::vector<std::byte> OwnTexts;
    std::uint32_t Depth = 0;             // the deepest element
    std::optional<SystemLayout> System;  // found when System values are first asked for
    bool HasRendering = false;           // made when it is first rendered
    InstructionList Rendering;
    std::string Literals;  // UTF-8, padded for copying in blocks
};

}  // namespace corvina::evtx
