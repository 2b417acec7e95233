#include "embedded/evtx/writer_xml.h"

#include "base/utf.h"

namespace corvina::evtx {
namespace {

enum Token : std::uint8_t {
    EndOfFragmentToken = 0x00,
    OpenElementToken = 0x01,
    CloseStartToken = 0x02,
    CloseEmptyToken = 0x03,
    EndElementToken = 0x04,
    ValueToken = 0x05,
    AttributeToken = 0x06,
    TemplateInstanceToken = 0x0C,
    SubstitutionToken = 0x0D,
    OptionalSubstitutionToken = 0x0E,
    FragmentHeaderToken = 0x0F,
    MoreFlag = 0x40,
};

constexpr std::size_t LengthSize = 4;
constexpr std::size_t NameHeadSize = 8;         // next name, hash, count of characters
constexpr std::size_t DefinitionHeadSize = 24;  // next definition, GUID, length

std::uint32_t NextHash(std::uint32_t hash, std::uint32_t unit) {
    return hash * 65599 + unit;
}

std::uint16_t NameHash(std::string_view utf16) {
    std::uint32_t hash = 0;
    for (std::size_t index = 0; index + 1 < utf16.size(); index += 2) {
        const auto low = static_cast<unsigned char>(utf16[index]);
        const auto high = static_cast<unsigned char>(utf16[index + 1]);
        hash = NextHash(hash, low | static_cast<std::uint32_t>(high) << 8);
    }
    return static_cast<std::uint16_t>(hash & 0xFFFF);
}

// Logs written by the platform sort templates by the names' hash, taken over the eight 16-bit units of the GUID.
std::size_t TemplateBucket(const GuidBytes& identifier) {
    std::uint32_t hash = 0;
    for (std::size_t index = 0; index < identifier.size(); index += 2) {
        hash = NextHash(hash, std::to_integer<std::uint32_t>(identifier[index]) |
                                  std::to_integer<std::uint32_t>(identifier[index + 1]) << 8);
    }
    return hash % TemplateBuckets;
}

bool IsNameAt(const std::string& chunk, std::size_t offset, std::string_view utf16) {
    return 2 * IntegerAt(chunk, offset + 6, 2) == utf16.size() &&
           chunk.compare(offset + NameHeadSize, utf16.size(), utf16) == 0;
}

}  // namespace

void AppendInteger(std::string& bytes, std::uint64_t value, std::size_t size) {
    char buffer[8];
    for (std::size_t index = 0; index < size; ++index) {
        buffer[index] = static_cast<char>(value >> (8 * index) & 0xFF);
    }
    bytes.append(buffer, size);
}

void PutInteger(std::string& bytes, std::size_t offset, std::uint64_t value, std::size_t size) {
    for (std::size_t index = 0; index < size; ++index) {
        bytes[offset + index] = static_cast<char>(value >> (8 * index) & 0xFF);
    }
}

std::uint64_t IntegerAt(const std::string& bytes, std::size_t offset, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t index = 0; index < size; ++index) {
        value |= std::uint64_t{static_cast<unsigned char>(bytes[offset + index])} << (8 * index);
    }
    return value;
}

BinaryXmlWriter::Element BinaryXmlWriter::Open(std::string_view name, bool hasAttributes, std::uint16_t dependency) {
    AppendInteger(chunk_, hasAttributes ? OpenElementToken | MoreFlag : OpenElementToken, 1);
    AppendInteger(chunk_, dependency, 2);
    Element element;
    element.LengthOffset = BeginLength();
    AsciiName(name);
    if (hasAttributes) {
        element.AttributesOffset = BeginLength();
    }
    return element;
}

void BinaryXmlWriter::Attribute(std::string_view name, bool moreFollow) {
    AppendInteger(chunk_, moreFollow ? AttributeToken | MoreFlag : AttributeToken, 1);
    AsciiName(name);
}

void BinaryXmlWriter::Text(std::wstring_view text) {
    AppendInteger(chunk_, ValueToken, 1);
    AppendInteger(chunk_, static_cast<std::uint8_t>(ValueType::Text), 1);
    const std::size_t count = chunk_.size();
    AppendInteger(chunk_, 0, 2);
    AppendUtf16Bytes(text, chunk_);
    PutInteger(chunk_, count, (chunk_.size() - count - 2) / 2, 2);
}

void BinaryXmlWriter::Substitution(std::uint16_t slot, ValueType type, bool optional) {
    AppendInteger(chunk_, optional ? OptionalSubstitutionToken : SubstitutionToken, 1);
    AppendInteger(chunk_, slot, 2);
    AppendInteger(chunk_, static_cast<std::uint8_t>(type), 1);
}

void BinaryXmlWriter::CloseStart(const Element& element) {
    EndAttributes(element);
    AppendInteger(chunk_, CloseStartToken, 1);
}

void BinaryXmlWriter::CloseEmpty(const Element& element) {
    EndAttributes(element);
    AppendInteger(chunk_, CloseEmptyToken, 1);
    EndElement(element);
}

void BinaryXmlWriter::End(const Element& element) {
    AppendInteger(chunk_, EndElementToken, 1);
    EndElement(element);
}

void BinaryXmlWriter::FragmentHeader() {
    AppendInteger(chunk_, FragmentHeaderToken, 1);
    AppendInteger(chunk_, 1, 1);
    AppendInteger(chunk_, 1, 1);
    AppendInteger(chunk_, 0, 1);
}

void BinaryXmlWriter::EndOfFragment() {
    AppendInteger(chunk_, EndOfFragmentToken, 1);
}

std::uint32_t BinaryXmlWriter::Instance(const GuidBytes& identifier, std::uint32_t definition) {
    AppendInteger(chunk_, TemplateInstanceToken, 1);
    AppendInteger(chunk_, 1, 1);
    for (std::size_t index = 0; index < 4; ++index) {
        chunk_.push_back(static_cast<char>(identifier[index]));
    }
    if (definition != 0) {
        AppendInteger(chunk_, definition, 4);
        return definition;
    }
    const auto here = static_cast<std::uint32_t>(chunk_.size() + 4);
    AppendInteger(chunk_, here, 4);
    std::uint32_t& newest = tables_.Templates[TemplateBucket(identifier)];
    AppendInteger(chunk_, newest, 4);
    newest = here;
    chunk_.append(reinterpret_cast<const char*>(identifier.data()), identifier.size());
    AppendInteger(chunk_, 0, 4);
    FragmentHeader();
    return here;
}

void BinaryXmlWriter::EndDefinition(std::uint32_t definition) {
    EndOfFragment();
    PutInteger(chunk_, definition + DefinitionHeadSize - 4, chunk_.size() - definition - DefinitionHeadSize, 4);
}

std::size_t BinaryXmlWriter::BeginLength() {
    const std::size_t field = chunk_.size();
    AppendInteger(chunk_, 0, LengthSize);
    return field;
}

void BinaryXmlWriter::EndLength(std::size_t field) {
    PutInteger(chunk_, field, chunk_.size() - field - LengthSize, LengthSize);
}

// The names that the schema itself gives are all ASCII.
void BinaryXmlWriter::AsciiName(std::string_view name) {
    name_.clear();
    for (const char character : name) {
        AppendInteger(name_, static_cast<unsigned char>(character), 2);
    }
    Name(name_);
}

void BinaryXmlWriter::Name(std::string_view utf16) {
    const std::uint16_t hash = NameHash(utf16);
    std::uint32_t& newest = tables_.Strings[hash % StringBuckets];
    for (std::uint32_t offset = newest; offset != 0;
         offset = static_cast<std::uint32_t>(IntegerAt(chunk_, offset, 4))) {
        if (IsNameAt(chunk_, offset, utf16)) {
            AppendInteger(chunk_, offset, 4);
            return;
        }
    }
    const auto here = static_cast<std::uint32_t>(chunk_.size() + 4);
    AppendInteger(chunk_, here, 4);
    AppendInteger(chunk_, newest, 4);
    newest = here;
    AppendInteger(chunk_, hash, 2);
    AppendInteger(chunk_, utf16.size() / 2, 2);
    chunk_.append(utf16);
    AppendInteger(chunk_, 0, 2);
}

void BinaryXmlWriter::EndAttributes(const Element& element) {
    if (element.AttributesOffset != 0) {
        EndLength(element.AttributesOffset);
    }
}

void BinaryXmlWriter::EndElement(const Element& element) {
    EndLength(element.LengthOffset);
}

}  // namespace corvina::evtx
