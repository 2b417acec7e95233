// Makes chunks of event logs byte by byte, right ones and broken ones, without the program's own writer: a fault that
// writer and reader have in common would not be seen otherwise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/evtx/log_file.h"

namespace corvina::evtx::test {

std::string LittleEndian(std::uint64_t value, std::size_t size);
std::string Utf16(std::u16string_view text);
// A name as it is stored: next name, hash, length, text, closing zero.
std::string NameBytes(std::string_view name);

// A value of a template instance.
struct TestValue {
    std::uint8_t Type = 0;
    std::string Bytes;
};

TestValue TextValue(std::u16string_view text);
TestValue NullValue();
TestValue UInt8Value(std::uint8_t number);
TestValue UInt16Value(std::uint16_t number);
TestValue UInt32Value(std::uint32_t number);
TestValue UInt64Value(std::uint64_t number);

inline constexpr std::uint8_t NestedXmlType = 0x21;
inline constexpr int NoDependency = -1;       // the field is there and says "none"
inline constexpr int NoDependencyField = -2;  // outside template definitions

class TestChunk;

// The tokens of binary XML. Names stand at the end of the chunk, so the bytes mean the same wherever they are put.
class Tokens {
  public:
    explicit Tokens(TestChunk& chunk) : chunk_(chunk) {}

    Tokens& Header();
    // The element's start tag is open afterwards, for attributes.
    Tokens& Open(std::string_view name, int dependency = NoDependency);
    Tokens& Attribute(std::string_view name);
    Tokens& CloseStart();
    Tokens& CloseEmpty();
    Tokens& End();
    Tokens& Text(std::u16string_view text);
    Tokens& CharacterData(std::u16string_view text);
    Tokens& Character(std::uint16_t code);
    Tokens& Entity(std::string_view name);
    Tokens& ProcessingInstruction(std::string_view target, std::u16string_view data);
    Tokens& Slot(std::uint16_t index);
    Tokens& OptionalSlot(std::uint16_t index);
    Tokens& EndFragment();
    Tokens& Raw(std::string_view bytes);
    // An instance of the definition at `offset`.
    Tokens& Instance(std::uint32_t offset, const std::vector<TestValue>& values);

    // <name>content</name> for the common case.
    Tokens& TextElement(std::string_view name, std::u16string_view text, int dependency = NoDependency);
    Tokens& SlotElement(std::string_view name, std::uint16_t index);

    const std::string& Bytes() const { return bytes_; }

  private:
    Tokens& Byte(std::uint8_t byte);

    TestChunk& chunk_;
    std::string bytes_;
};

class TestChunk {
  public:
    TestChunk();

    // Where a name is stored; it is stored on first use.
    std::uint32_t Name(std::string_view name);
    // Stores a template definition and gives its offset.
    std::uint32_t Define(const Tokens& definition);
    // Adds a record and gives its offset.
    std::uint32_t AddRecord(std::uint64_t id, const Tokens& content, std::uint64_t written = 0);
    // A record `<Event>id</Event>` that refers to nothing outside itself.
    std::uint32_t AddPlainRecord(std::uint64_t id);

    void Put(std::size_t offset, std::string_view bytes);
    std::size_t FreeSpace() const { return free_; }

    // The bytes with a header and right checksums. What is Put afterwards shows as damage.
    std::vector<std::byte> Finish();
    std::vector<std::byte> Bytes() const;

  private:
    std::uint32_t Store(std::string_view bytes);

    std::string bytes_;
    std::size_t free_ = 512;
    std::vector<std::uint64_t> recordIds_;
    std::uint32_t lastRecord_ = 0;
    std::size_t stored_ = ChunkSize;  // names and definitions grow down from the end
    std::map<std::string, std::uint32_t, std::less<>> names_;
};

// The XML of the only record of a chunk; empty when it was found damaged. Both text forms are rendered and compared.
std::string OnlyXml(TestChunk& chunk);
std::string XmlOf(const Chunk& chunk, const RecordPlace& record);

// The XML of a record that is an instance of `definition` with these values.
std::string RenderTemplate(TestChunk& chunk, const Tokens& definition, const std::vector<TestValue>& values);

}  // namespace corvina::evtx::test
