#include "embedded/evtx/binary_xml_parser.h"

#include <array>
#include <cstring>

#include "embedded/evtx/xml_characters.h"

namespace corvina::evtx {
namespace {

constexpr std::uint16_t NoDependency = 0xFFFF;
constexpr std::uint8_t TextValueType = 0x01;
constexpr std::uint32_t LongestName = 256;
constexpr std::uint32_t MostAttributes = 256;  // of one element
constexpr std::size_t LongestProgram = 32768;  // instructions; more than the 64 KiB of a chunk can hold
constexpr std::uint8_t LengthFieldSize = 4;    // of an element or its attributes

bool ReadText(ByteReader& reader, Instruction& text) {
    std::uint16_t length = 0;
    if (!reader.Read(length)) {
        return false;
    }
    text.Place = static_cast<std::uint32_t>(reader.Position());
    text.Length = length;
    return reader.Skip(2 * std::size_t{length});
}

class ElementParser {
  public:
    // `names` only for template definitions.
    ElementParser(ByteReader& reader, Program& program, std::vector<NameReference>* names)
        : reader_(reader), names_(names), program_(program), code_(program.Structure) {}

    bool Parse() {
        std::uint8_t byte = 0;
        while (reader_.Read(byte) && byte != token::EndOfFragment) {
            if (!ParseToken(static_cast<std::uint8_t>(byte & ~token::MoreFollow), (byte & token::MoreFollow) != 0)) {
                return false;
            }
        }
        return depth_ == 0 && hasRoot_ && !targetOpen_ && code_.size() <= LongestProgram;
    }

  private:
    struct OpenElement {
        std::uint32_t Index = 0;
        std::uint32_t DependencyIndex = 0;
        bool HasDependency = false;
        std::uint32_t Items = 0;  // pieces of content
    };

    bool ParseToken(std::uint8_t code, bool more) {
        if (inStartTag_) {
            return ParseInStartTag(code);
        }
        if (targetOpen_ != (code == token::ProcessingData)) {
            return false;
        }
        switch (code) {
            case token::OpenElement:
                return ParseOpenElement(more);
            case token::EndElement:
                return depth_ > 0 && CloseElement(Operation::EndElement);
            case token::ProcessingTarget:
                targetOpen_ = true;
                CountItem();
                return AddNamed(Operation::ProcessingTarget) && !IsReservedTarget();
            case token::ProcessingData:
                targetOpen_ = false;
                return AddText(Operation::ProcessingData);
            default:
                return depth_ > 0 && ParseContent(code);
        }
    }

    bool ParseInStartTag(std::uint8_t code) {
        switch (code) {
            case token::Attribute:
                return ParseAttribute();
            case token::CloseStartTag:
                inStartTag_ = false;
                Add(Operation::EndStartTag);
                return true;
            case token::CloseEmptyElement:
                inStartTag_ = false;
                return CloseElement(Operation::EndEmptyElement);
            default:
                return false;
        }
    }

    bool ParseOpenElement(bool hasAttributes) {
        if (depth_ == MaximumDepth || (depth_ == 0 && hasRoot_)) {
            return false;
        }
        CountItem();
        OpenElement open;
        std::uint16_t dependency = NoDependency;
        std::uint32_t ignoredLength = 0;
        if ((names_ != nullptr && !reader_.Read(dependency)) || !reader_.Read(ignoredLength)) {
            return false;
        }
        if (dependency != NoDependency) {
            open.HasDependency = true;
            open.DependencyIndex = NextIndex();
            Add(Operation::SkipIfNull).Slot = dependency;
        }
        open.Index = NextIndex();
        if (!AddNamed(Operation::Element) || (hasAttributes && !reader_.Read(ignoredLength))) {
            return false;
        }
        AddLengthsToReference(hasAttributes);
        hasRoot_ = true;
        inStartTag_ = true;
        attributes_ = 0;
        open_[depth_++] = open;
        program_.Depth = std::max(program_.Depth, depth_);
        return true;
    }

    bool CloseElement(Operation operation) {
        const OpenElement& open = open_[--depth_];
        Add(operation);
        Instruction& element = code_[open.Index];
        element.End = NextIndex();
        if (element.Content == ContentKind::Optional && open.Items != 1) {
            element.Content = ContentKind::Substituted;
        }
        if (open.HasDependency) {
            code_[open.DependencyIndex].End = NextIndex();
        }
        return true;
    }

    bool ParseAttribute() {
        const std::size_t index = NextIndex();
        if (!AddNamed(Operation::Attribute) || !IsNewAttribute(index)) {
            return false;
        }
        std::uint32_t items = 0;
        std::uint8_t byte = 0;
        while (reader_.Peek(byte)) {
            const auto code = static_cast<std::uint8_t>(byte & ~token::MoreFollow);
            if (code == token::Attribute || code == token::CloseStartTag || code == token::CloseEmptyElement) {
                break;
            }
            reader_.Skip(1);
            if (code == token::CharacterData || !ParseItem(code, index, ++items)) {
                return false;
            }
        }
        Add(Operation::EndAttribute);
        code_[index].End = NextIndex();
        return true;
    }

    // No element may have the same attribute twice. The attributes so far stand right behind their element.
    bool IsNewAttribute(std::size_t attribute) {
        const std::byte* chunk = reader_.Bytes().data();
        const Instruction& added = code_[attribute];
        for (std::size_t index = open_[depth_ - 1].Index + 1; index < attribute; index = code_[index].End) {
            const Instruction& other = code_[index];
            if (other.Length == added.Length &&
                std::memcmp(chunk + other.Place, chunk + added.Place, 2 * std::size_t{other.Length}) == 0) {
                return false;
            }
        }
        return ++attributes_ <= MostAttributes;
    }

    bool ParseContent(std::uint8_t code) {
        OpenElement& open = open_[depth_ - 1];
        return ParseItem(code, open.Index, ++open.Items);
    }

    // One piece of the content of the element or attribute that stands at `owner`.
    bool ParseItem(std::uint8_t code, std::size_t owner, std::uint32_t items) {
        std::uint8_t type = 0;
        switch (code) {
            case token::Value:
                return reader_.Read(type) && type == TextValueType && AddText(Operation::Text);
            case token::CharacterData:
                return AddText(Operation::CharacterData);
            case token::CharacterReference: {
                std::uint16_t character = 0;
                Add(Operation::Character);
                const bool read = reader_.Read(character);
                code_.back().Place = character;
                return read;
            }
            case token::EntityReference:
                return AddNamed(Operation::Entity);
            case token::Substitution:
            case token::OptionalSubstitution:
                return ParseSubstitution(code == token::OptionalSubstitution, owner, items);
            default:
                return false;
        }
    }

    bool ParseSubstitution(bool optional, std::size_t owner, std::uint32_t items) {
        std::uint16_t slot = 0;
        std::uint8_t ignoredType = 0;
        if (!reader_.Read(slot) || !reader_.Read(ignoredType)) {
            return false;
        }
        Instruction& substitution = Add(Operation::Substitution);
        substitution.Slot = slot;
        substitution.InAttribute = code_[owner].Code == Operation::Attribute;
        Instruction& holder = code_[owner];
        if (holder.Content == ContentKind::Fixed) {
            holder.Content = optional && items == 1 ? ContentKind::Optional : ContentKind::Substituted;
            holder.Slot = slot;
        } else {
            holder.Content = ContentKind::Substituted;
        }
        return true;
    }

    // "xml" in any case would be a declaration in the middle of the text.
    bool IsReservedTarget() const {
        const Instruction& target = code_.back();
        bool reserved = target.Length == 3;
        for (std::size_t index = 0; reserved && index < target.Length; ++index) {
            const unsigned unit = LoadUInt16(reader_.Bytes().data() + target.Place + 2 * index);
            reserved = (unit | 0x20U) == static_cast<unsigned char>("xml"[index]);
        }
        return reserved;
    }

    void CountItem() {
        if (depth_ > 0) {
            ++open_[depth_ - 1].Items;
        }
    }

    bool AddNamed(Operation operation) {
        NamePlace name;
        const std::size_t begin = reader_.Position();
        if (!ReadName(reader_, name)) {
            return false;
        }
        if (names_ != nullptr) {
            const auto end = static_cast<std::uint32_t>(reader_.Position());
            names_->push_back({static_cast<std::uint32_t>(begin), end, 0, 0, NextIndex()});
        }
        Instruction& added = Add(operation);
        added.Place = name.Place;
        added.Length = name.Length;
        return true;
    }

    // The reference to the name of an element has its length in front of it, and that of its attributes behind it.
    void AddLengthsToReference(bool hasAttributes) {
        if (names_ != nullptr) {
            NameReference& reference = names_->back();
            reference.Begin -= LengthFieldSize;
            reference.SizeBefore = LengthFieldSize;
            reference.SizeBehind = hasAttributes ? LengthFieldSize : 0;
            reference.End += reference.SizeBehind;
        }
    }

    bool AddText(Operation operation) { return ReadText(reader_, Add(operation)); }

    Instruction& Add(Operation operation) {
        Instruction& added = code_.emplace_back();
        added.Code = operation;
        added.Depth = static_cast<std::uint8_t>(depth_);
        return added;
    }

    std::uint16_t NextIndex() const { return static_cast<std::uint16_t>(code_.size()); }

    ByteReader& reader_;
    std::vector<NameReference>* names_;
    Program& program_;
    InstructionList& code_;
    std::array<OpenElement, MaximumDepth> open_;
    std::uint32_t depth_ = 0;
    std::uint32_t attributes_ = 0;
    bool hasRoot_ = false;
    bool inStartTag_ = false;
    bool targetOpen_ = false;  // a processing instruction waits for its data
};

}  // namespace

// Names are stored once a chunk: right here on first use, elsewhere in the chunk afterwards.
bool ReadName(ByteReader& reader, NamePlace& name) {
    std::uint32_t offset = 0;
    if (!reader.Read(offset)) {
        return false;
    }
    const auto chunk = reader.Bytes();
    if (offset > chunk.size() || chunk.size() - offset < NameHeaderSize) {
        return false;
    }
    name.Length = LoadUInt16(chunk.data() + offset + 6);
    name.Place = offset + static_cast<std::uint32_t>(NameHeaderSize);
    if (name.Length > LongestName || chunk.size() - name.Place < 2 * std::size_t{name.Length}) {
        return false;
    }
    if (offset == reader.Position() &&
        !reader.Skip(NameHeaderSize + 2 * std::size_t{name.Length} + NameTerminatorSize)) {
        return false;
    }
    return IsXmlName(chunk.subspan(name.Place, 2 * std::size_t{name.Length}));
}

bool SkipFragmentHeaders(ByteReader& reader) {
    std::uint8_t byte = 0;
    while (reader.Peek(byte) && byte == token::FragmentHeader) {
        std::uint8_t major = 0;
        std::uint8_t minor = 0;
        if (!reader.Skip(1) || !reader.Read(major) || !reader.Read(minor) || !reader.Skip(1) || major != 1) {
            return false;
        }
    }
    return true;
}

namespace {

bool Parse(ByteReader& reader, Program& program, std::vector<NameReference>* names) {
    program.Texts = reader.Bytes().data();
    program.Structure.clear();
    program.Structure.reserve(reader.Remaining() / 8);
    program.Depth = 0;
    return ElementParser(reader, program, names).Parse();
}

}  // namespace

bool ParseElements(ByteReader& reader, Program& program) {
    return Parse(reader, program, nullptr);
}

bool ParseDefinition(ByteReader& reader, Program& program, std::vector<NameReference>& names) {
    names.clear();
    if (!Parse(reader, program, &names)) {
        return false;
    }
    program.Structure.shrink_to_fit();  // it may be kept
    return true;
}

}  // namespace corvina::evtx
