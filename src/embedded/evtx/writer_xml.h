// Binary XML as it is written into a chunk: names stored once a chunk and chained in its hash buckets, elements whose
// lengths are known only when they end, and template instances. Format: the published descriptions of the .evtx format.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/identifiers.h"
#include "embedded/evtx/value_type.h"

namespace corvina::evtx {

inline constexpr std::size_t StringBuckets = 64;
inline constexpr std::size_t TemplateBuckets = 32;
inline constexpr std::uint16_t NoDependency = 0xFFFF;

// The tables of a chunk's header: per bucket the offset of its newest entry, 0 for none.
struct ChunkTables {
    std::array<std::uint32_t, StringBuckets> Strings{};
    std::array<std::uint32_t, TemplateBuckets> Templates{};
};

// Little-endian integers at the end of, or inside, a byte text.
void AppendInteger(std::string& bytes, std::uint64_t value, std::size_t size);
void PutInteger(std::string& bytes, std::size_t offset, std::uint64_t value, std::size_t size);
std::uint64_t IntegerAt(const std::string& bytes, std::size_t offset, std::size_t size);

// Writes at the end of a chunk's bytes, whose first byte is the chunk's first: offsets in the format are sizes of the
// text.
class BinaryXmlWriter {
  public:
    BinaryXmlWriter(std::string& chunk, ChunkTables& tables) : chunk_(chunk), tables_(tables) {}

    // Where an open element's lengths stand, to be filled in later.
    struct Element {
        std::size_t LengthOffset = 0;
        std::size_t AttributesOffset = 0;  // 0 for an element without attributes
    };

    // A dependency is the slot without whose value the element is left out.
    Element Open(std::string_view name, bool hasAttributes, std::uint16_t dependency = NoDependency);
    void Attribute(std::string_view name, bool moreFollow);
    void Text(std::wstring_view text);
    void Substitution(std::uint16_t slot, ValueType type, bool optional);
    void CloseStart(const Element& element);  // ">"
    void CloseEmpty(const Element& element);  // "/>", which ends the element
    void End(const Element& element);
    void FragmentHeader();
    void EndOfFragment();

    // A length field, which counts the bytes from behind it up to its end. Gives its place.
    std::size_t BeginLength();
    void EndLength(std::size_t field);

    // A reference to a name of an element, attribute, entity or processing instruction, given in UTF-16 bytes. The name
    // stands where it is first used.
    void Name(std::string_view utf16);

    // The front of a template instance, up to the definition or the count of its values. With `definition` 0 the
    // definition follows here: its head is written, chained into its bucket, and must be ended with EndDefinition.
    std::uint32_t Instance(const GuidBytes& identifier, std::uint32_t definition);
    void EndDefinition(std::uint32_t definition);

  private:
    void AsciiName(std::string_view name);
    void EndAttributes(const Element& element);
    void EndElement(const Element& element);

    std::string& chunk_;
    ChunkTables& tables_;
    std::string name_;  // working memory
};

}  // namespace corvina::evtx
