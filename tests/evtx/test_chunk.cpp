#include "evtx/test_chunk.h"

#include <cstring>
#include <gtest/gtest.h>
#include <zlib.h>

#include "base/utf.h"

namespace corvina::evtx::test {
namespace {

std::uint32_t Checksum(std::string_view bytes, std::uint32_t start = 0) {
    return static_cast<std::uint32_t>(
        crc32(start, reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size())));
}

TestValue Number(std::uint8_t type, std::uint64_t number, std::size_t size) {
    return {type, LittleEndian(number, size)};
}

}  // namespace

std::string LittleEndian(std::uint64_t value, std::size_t size) {
    std::string bytes;
    for (std::size_t index = 0; index < size; ++index) {
        bytes += static_cast<char>(value >> (8 * index) & 0xFF);
    }
    return bytes;
}

std::string Utf16(std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += LittleEndian(unit, 2);
    }
    return bytes;
}

std::string NameBytes(std::string_view name) {
    std::string wide;
    AppendUtf16Bytes(WideFromUtf8(name), wide);
    return std::string(6, '\0') + LittleEndian(wide.size() / 2, 2) + wide + std::string(2, '\0');
}

TestValue TextValue(std::u16string_view text) {
    return {0x01, Utf16(text)};
}
TestValue NullValue() {
    return {};
}
TestValue UInt8Value(std::uint8_t number) {
    return Number(0x04, number, 1);
}
TestValue UInt16Value(std::uint16_t number) {
    return Number(0x06, number, 2);
}
TestValue UInt32Value(std::uint32_t number) {
    return Number(0x08, number, 4);
}
TestValue UInt64Value(std::uint64_t number) {
    return Number(0x0A, number, 8);
}

Tokens& Tokens::Byte(std::uint8_t byte) {
    bytes_ += static_cast<char>(byte);
    return *this;
}

Tokens& Tokens::Raw(std::string_view bytes) {
    bytes_ += bytes;
    return *this;
}

Tokens& Tokens::Header() {
    return Raw({"\x0F\x01\x01\x00", 4});
}

Tokens& Tokens::Open(std::string_view name, int dependency) {
    Byte(0x01);
    if (dependency != NoDependencyField) {
        Raw(LittleEndian(static_cast<std::uint64_t>(dependency), 2));
    }
    return Raw(LittleEndian(0, 4)).Raw(LittleEndian(chunk_.Name(name), 4));
}

Tokens& Tokens::Attribute(std::string_view name) {
    return Byte(0x06).Raw(LittleEndian(chunk_.Name(name), 4));
}
Tokens& Tokens::CloseStart() {
    return Byte(0x02);
}
Tokens& Tokens::CloseEmpty() {
    return Byte(0x03);
}
Tokens& Tokens::End() {
    return Byte(0x04);
}

Tokens& Tokens::Text(std::u16string_view text) {
    return Byte(0x05).Byte(0x01).Raw(LittleEndian(text.size(), 2)).Raw(Utf16(text));
}

Tokens& Tokens::CharacterData(std::u16string_view text) {
    return Byte(0x07).Raw(LittleEndian(text.size(), 2)).Raw(Utf16(text));
}

Tokens& Tokens::Character(std::uint16_t code) {
    return Byte(0x08).Raw(LittleEndian(code, 2));
}
Tokens& Tokens::Entity(std::string_view name) {
    return Byte(0x09).Raw(LittleEndian(chunk_.Name(name), 4));
}

Tokens& Tokens::ProcessingInstruction(std::string_view target, std::u16string_view data) {
    Byte(0x0A).Raw(LittleEndian(chunk_.Name(target), 4));
    return Byte(0x0B).Raw(LittleEndian(data.size(), 2)).Raw(Utf16(data));
}

Tokens& Tokens::Slot(std::uint16_t index) {
    return Byte(0x0D).Raw(LittleEndian(index, 2)).Byte(0x01);
}
Tokens& Tokens::OptionalSlot(std::uint16_t index) {
    return Byte(0x0E).Raw(LittleEndian(index, 2)).Byte(0x01);
}
Tokens& Tokens::EndFragment() {
    return Byte(0x00);
}

Tokens& Tokens::Instance(std::uint32_t offset, const std::vector<TestValue>& values) {
    Byte(0x0C).Byte(0x01).Raw(LittleEndian(0x1234, 4)).Raw(LittleEndian(offset, 4));
    Raw(LittleEndian(values.size(), 4));
    for (const TestValue& value : values) {
        Raw(LittleEndian(value.Bytes.size(), 2)).Byte(value.Type).Byte(0);
    }
    for (const TestValue& value : values) {
        Raw(value.Bytes);
    }
    return *this;
}

Tokens& Tokens::TextElement(std::string_view name, std::u16string_view text, int dependency) {
    return Open(name, dependency).CloseStart().Text(text).End();
}

Tokens& Tokens::SlotElement(std::string_view name, std::uint16_t index) {
    return Open(name).CloseStart().Slot(index).End();
}

TestChunk::TestChunk() : bytes_(ChunkSize, '\0') {}

std::uint32_t TestChunk::Store(std::string_view bytes) {
    stored_ -= bytes.size();
    EXPECT_GT(stored_, free_) << "the test's chunk is too full";
    Put(stored_, bytes);
    return static_cast<std::uint32_t>(stored_);
}

std::uint32_t TestChunk::Name(std::string_view name) {
    const auto found = names_.find(name);
    if (found != names_.end()) {
        return found->second;
    }
    const std::uint32_t offset = Store(NameBytes(name));
    names_.emplace(name, offset);
    return offset;
}

std::uint32_t TestChunk::Define(const Tokens& definition) {
    return Store(std::string(20, '\0') + LittleEndian(definition.Bytes().size(), 4) + definition.Bytes());
}

std::uint32_t TestChunk::AddRecord(std::uint64_t id, const Tokens& content, std::uint64_t written) {
    const std::uint32_t size = static_cast<std::uint32_t>(28 + content.Bytes().size());
    const auto offset = static_cast<std::uint32_t>(free_);
    Put(free_, "**" + LittleEndian(0, 2) + LittleEndian(size, 4) + LittleEndian(id, 8) + LittleEndian(written, 8) +
                   content.Bytes() + LittleEndian(size, 4));
    free_ += size;
    recordIds_.push_back(id);
    lastRecord_ = offset;
    EXPECT_LE(free_, stored_) << "the test's chunk is too full";
    return offset;
}

std::uint32_t TestChunk::AddPlainRecord(std::uint64_t id) {
    const std::string digits = std::to_string(id);
    Tokens tokens(*this);
    tokens.Header().Raw({"\x01\0\0\0\0", 5});
    const std::size_t name = free_ + 24 + tokens.Bytes().size() + 4;
    tokens.Raw(LittleEndian(name, 4)).Raw(NameBytes("Event")).CloseStart();
    tokens.Text(std::u16string(digits.begin(), digits.end())).End().EndFragment();
    return AddRecord(id, tokens);
}

void TestChunk::Put(std::size_t offset, std::string_view bytes) {
    bytes_.replace(offset, bytes.size(), bytes);
}

std::vector<std::byte> TestChunk::Finish() {
    Put(0, {"ElfChnk", 8});
    if (!recordIds_.empty()) {
        Put(8, LittleEndian(1, 8) + LittleEndian(recordIds_.size(), 8));
        Put(24, LittleEndian(recordIds_.front(), 8) + LittleEndian(recordIds_.back(), 8));
    }
    Put(40, LittleEndian(128, 4) + LittleEndian(lastRecord_, 4));
    Put(48, LittleEndian(free_, 4));
    const std::string_view all = bytes_;
    Put(52, LittleEndian(Checksum(all.substr(512, free_ - 512)), 4));
    Put(124, LittleEndian(Checksum(all.substr(128, 384), Checksum(all.substr(0, 120))), 4));
    return Bytes();
}

std::vector<std::byte> TestChunk::Bytes() const {
    std::vector<std::byte> bytes(bytes_.size());
    std::memcpy(bytes.data(), bytes_.data(), bytes_.size());
    return bytes;
}

std::string XmlOf(const Chunk& chunk, const RecordPlace& record) {
    std::string utf8 = "before ";
    std::wstring wide = L"before ";
    EXPECT_TRUE(chunk.AppendXml(record, utf8));
    EXPECT_TRUE(chunk.AppendXml(record, wide));
    EXPECT_EQ(Utf8FromWide(wide), utf8);
    return utf8.substr(7);
}

std::string OnlyXml(TestChunk& testChunk) {
    const Chunk chunk(testChunk.Finish());
    if (chunk.Records().empty()) {
        EXPECT_EQ(chunk.Damage().SkippedRecords, 1U);
        return {};
    }
    EXPECT_EQ(chunk.Records().size(), 1U);
    return XmlOf(chunk, chunk.Records()[0]);
}

std::string RenderTemplate(TestChunk& chunk, const Tokens& definition, const std::vector<TestValue>& values) {
    Tokens content(chunk);
    content.Header().Instance(chunk.Define(definition), values).EndFragment();
    chunk.AddRecord(1, content);
    return OnlyXml(chunk);
}

}  // namespace corvina::evtx::test
