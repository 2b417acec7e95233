#include "embedded/evtx/record_copy.h"

#include <algorithm>
#include <bitset>

#include "embedded/evtx/binary_xml_parser.h"
#include "embedded/evtx/template_definition.h"
#include "embedded/evtx/value_type.h"
#include "embedded/evtx/writer_xml.h"

namespace corvina::evtx {
namespace {

constexpr std::size_t ValueDescriptorSize = 4;

std::string_view TextOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Writes the pieces: a byte for the kind, a 32-bit number, and the bytes of those that have any.
class PieceList {
  public:
    explicit PieceList(std::string& pieces) : pieces_(pieces) {}

    // Bytes that follow one another become one piece.
    void Bytes(std::span<const std::byte> bytes) {
        if (run_ == 0) {
            Add(PortableKind::Bytes, 0);
            run_ = pieces_.size();
        }
        pieces_.append(TextOf(bytes));
        PutInteger(pieces_, run_ - 4, pieces_.size() - run_, 4);
    }

    void Byte(std::uint8_t byte) {
        const std::byte one[] = {std::byte{byte}};
        Bytes(one);
    }

    void Name(std::span<const std::byte> utf16) {
        Add(PortableKind::Name, static_cast<std::uint32_t>(utf16.size()));
        pieces_.append(TextOf(utf16));
    }

    void Add(PortableKind kind, std::uint32_t number = 0) {
        AppendInteger(pieces_, static_cast<std::uint8_t>(kind), 1);
        AppendInteger(pieces_, number, 4);
        run_ = 0;
    }

    std::size_t Size() const { return pieces_.size(); }

    // Forgets what was written behind a place at which a piece began.
    void CutTo(std::size_t size) {
        pieces_.resize(size);
        run_ = 0;
    }

  private:
    std::string& pieces_;
    std::size_t run_ = 0;  // where the bytes of the piece of bytes begin that is last; 0 when another one is
};

// Copies an element with what stands around it, up to the end of the fragment. As lenient as the reader's parser, or
// more: what it takes, this takes.
class ElementCopier {
  public:
    ElementCopier(ByteReader& reader, bool hasDependencies, PieceList& pieces)
        : reader_(reader), hasDependencies_(hasDependencies), pieces_(pieces) {}

    bool Copy() {
        std::uint8_t byte = 0;
        while (reader_.Read(byte) && byte != token::EndOfFragment) {
            if (!CopyToken(byte)) {
                return false;
            }
        }
        return depth_ == 0;
    }

  private:
    bool CopyToken(std::uint8_t byte) {
        const auto code = static_cast<std::uint8_t>(byte & ~token::MoreFollow);
        if (code == token::OpenElement) {
            return OpenElement(byte);
        }
        const bool closesStartTag = code == token::CloseStartTag || code == token::CloseEmptyElement;
        if (closesStartTag && !CloseStartTag()) {
            return false;
        }
        pieces_.Byte(byte);
        switch (code) {
            case token::CloseStartTag:
                return true;
            case token::CloseEmptyElement:
            case token::EndElement:
                return CloseElement();
            case token::Attribute:
            case token::EntityReference:
            case token::ProcessingTarget:
                return CopyName();
            case token::Value:
                return CopyBytes(1) && CopyText();
            case token::CharacterData:
            case token::ProcessingData:
                return CopyText();
            case token::CharacterReference:
                return CopyBytes(2);
            case token::Substitution:
            case token::OptionalSubstitution:
                return CopyBytes(3);
            default:
                return false;
        }
    }

    bool OpenElement(std::uint8_t byte) {
        if (depth_ == MaximumDepth || inStartTag_) {
            return false;
        }
        pieces_.Byte(byte);
        if (hasDependencies_ && !CopyBytes(2)) {
            return false;
        }
        pieces_.Add(PortableKind::BeginLength);
        if (!reader_.Skip(4) || !CopyName()) {
            return false;
        }
        hasAttributes_[depth_] = (byte & token::MoreFollow) != 0;
        if (hasAttributes_[depth_]) {
            pieces_.Add(PortableKind::BeginLength);
        }
        inStartTag_ = true;
        return !hasAttributes_[depth_++] || reader_.Skip(4);
    }

    bool CloseStartTag() {
        if (!inStartTag_) {
            return false;
        }
        inStartTag_ = false;
        if (hasAttributes_[depth_ - 1]) {
            pieces_.Add(PortableKind::EndLength);
        }
        return true;
    }

    bool CloseElement() {
        if (depth_ == 0 || inStartTag_) {
            return false;
        }
        --depth_;
        pieces_.Add(PortableKind::EndLength);
        return true;
    }

    bool CopyName() {
        NamePlace name;
        if (!ReadName(reader_, name)) {
            return false;
        }
        pieces_.Name(reader_.Bytes().subspan(name.Place, 2 * std::size_t{name.Length}));
        return true;
    }

    bool CopyText() {
        std::uint16_t length = 0;
        ByteReader ahead = reader_;
        return ahead.Read(length) && CopyBytes(2 + 2 * std::size_t{length});
    }

    bool CopyBytes(std::size_t count) {
        const std::size_t begin = reader_.Position();
        if (!reader_.Skip(count)) {
            return false;
        }
        pieces_.Bytes(reader_.Bytes().subspan(begin, count));
        return true;
    }

    ByteReader& reader_;
    bool hasDependencies_;
    PieceList& pieces_;
    std::bitset<MaximumDepth> hasAttributes_;  // of the open elements
    std::uint32_t depth_ = 0;
    bool inStartTag_ = false;
};

class FragmentCopier {
  public:
    FragmentCopier(RecordCopier& copier, RecordCopy& copy) : copier_(copier), copy_(copy), pieces_(copy.Content) {}

    // `depth` counts the values that this one is nested in. What stands behind the end of a fragment means nothing and
    // is left out.
    bool Copy(ByteReader reader, std::uint32_t depth) {
        const std::size_t begin = reader.Position();
        if (!SkipFragmentHeaders(reader)) {
            return false;
        }
        if (reader.Position() != begin) {
            constexpr std::byte Header[] = {std::byte{token::FragmentHeader}, std::byte{1}, std::byte{1}, std::byte{0}};
            pieces_.Bytes(Header);
        }
        std::uint8_t byte = 0;
        if (!reader.Peek(byte)) {
            return true;
        }
        if (byte != token::EndOfFragment && !CopyContent(reader, byte, depth)) {
            return false;
        }
        pieces_.Byte(token::EndOfFragment);
        return true;
    }

  private:
    bool CopyContent(ByteReader& reader, std::uint8_t byte, std::uint32_t depth) {
        if (byte != token::TemplateInstance) {
            return ElementCopier(reader, false, pieces_).Copy();
        }
        reader.Skip(1);
        return CopyInstance(reader, depth);
    }

    bool CopyInstance(ByteReader& reader, std::uint32_t depth) {
        std::uint32_t offset = 0;
        if (!ReadInstanceHead(reader, offset)) {
            return false;
        }
        auto definition = copier_.Definition(offset);
        if (definition == nullptr || !PassOwnDefinition(reader, offset)) {
            return false;
        }
        pieces_.Add(PortableKind::Template, static_cast<std::uint32_t>(copy_.Definitions.size()));
        copy_.Definitions.push_back(std::move(definition));
        return CopyValues(reader, depth);
    }

    bool CopyValues(ByteReader& reader, std::uint32_t depth) {
        std::uint32_t count = 0;
        if (!reader.Read(count) || count > reader.Remaining() / ValueDescriptorSize) {
            return false;
        }
        pieces_.Add(PortableKind::BeginValues, count);
        const std::byte* descriptor = reader.Bytes().data() + reader.Position();
        reader.Skip(count * ValueDescriptorSize);
        for (std::uint32_t index = 0; index < count; ++index, descriptor += ValueDescriptorSize) {
            const std::size_t begin = reader.Position();
            if (!reader.Skip(LoadUInt16(descriptor))) {
                return false;
            }
            const std::uint8_t type = LoadUInt8(descriptor + 2);
            if ((type & ~ArrayFlag) == static_cast<std::uint8_t>(ValueType::BinaryXml)) {
                CopyNested(ByteReader(reader.Bytes(), begin, reader.Position()), depth + 1);
            } else {
                pieces_.Bytes(reader.Bytes().subspan(begin, reader.Position() - begin));
            }
            pieces_.Add(PortableKind::EndValue, type);
        }
        pieces_.Add(PortableKind::EndValues);
        return true;
    }

    // A broken value in a record that can be rendered is one that its template never shows. As it is, its offsets would
    // lead other readers astray in another chunk.
    void CopyNested(ByteReader reader, std::uint32_t depth) {
        const std::size_t begin = pieces_.Size();
        if (depth > MaximumDepth || !Copy(reader, depth)) {
            pieces_.CutTo(begin);
            pieces_.Byte(token::EndOfFragment);
        }
    }

    RecordCopier& copier_;
    RecordCopy& copy_;
    PieceList pieces_;
};

}  // namespace

std::uint32_t PortableReader::Integer() {
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        value |= std::uint32_t{static_cast<unsigned char>(rest_[index])} << (8 * index);
    }
    rest_.remove_prefix(4);
    return value;
}

bool PortableReader::Next(PortablePiece& piece) {
    if (rest_.empty()) {
        return false;
    }
    piece.Kind = static_cast<PortableKind>(rest_.front());
    rest_.remove_prefix(1);
    piece.Number = Integer();
    piece.Bytes = {};
    if (piece.Kind == PortableKind::Bytes || piece.Kind == PortableKind::Name) {
        piece.Bytes = rest_.substr(0, piece.Number);
        rest_.remove_prefix(piece.Number);
    }
    return true;
}

bool RecordCopier::Copy(ByteReader content, RecordCopy& copy) {
    copy.Content.clear();
    copy.Definitions.clear();
    return FragmentCopier(*this, copy).Copy(content, 0);
}

std::shared_ptr<const TemplateCopy> RecordCopier::Definition(std::uint32_t offset) {
    const auto [entry, isNew] = definitions_.try_emplace(offset);
    if (isNew) {
        entry->second = CopyDefinition(offset);
    }
    return entry->second;
}

std::shared_ptr<const TemplateCopy> RecordCopier::CopyDefinition(std::uint32_t offset) {
    const std::optional<TemplateDefinition> found = FindTemplateDefinition(chunk_, offset, allowance_);
    if (!found) {
        return nullptr;
    }
    allowance_ -= found->Content.Remaining();
    auto definition = std::make_shared<TemplateCopy>();
    definition->Identifier = found->Identifier;
    PieceList pieces(definition->Content);
    ByteReader reader = found->Content;
    if (!SkipFragmentHeaders(reader) || !ElementCopier(reader, true, pieces).Copy() || pieces.Size() > allowance_) {
        return nullptr;
    }
    allowance_ -= pieces.Size();
    return definition;
}

}  // namespace corvina::evtx
