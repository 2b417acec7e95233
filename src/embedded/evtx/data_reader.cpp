#include "embedded/evtx/data_reader.h"

#include <array>
#include <string_view>

#include "base/utf.h"
#include "embedded/evtx/piece_text.h"
#include "embedded/evtx/program_runner.h"
#include "embedded/evtx/value_text.h"
#include "embedded/evtx/xml_text.h"

namespace corvina::evtx {
namespace {

using Bytes = std::span<const std::byte>;

// A leaf: an element without child elements, inside a section, which is a child of the root.
struct Leaf {
    Bytes Section;  // the names, in UTF-16
    Bytes Parent;
    Bytes Element;
    bool IsSection = false;  // the section itself has no child elements
    bool HasName = false;    // it has a Name attribute
    std::wstring_view Name;
    std::wstring_view Text;
};

// Hands the leaves of an event and the attributes of its sections to a consumer:
//     bool Wants(Bytes section);
//     void AddAttribute(Bytes attribute, std::wstring_view text);   of a wanted section
//     void AddLeaf(const Leaf& leaf);                               in a wanted section
template <typename Consumer>
class LeafHandler {
  public:
    static constexpr bool WantsStructure = true;

    LeafHandler(Bytes chunk, Consumer& consumer) : chunk_(chunk), consumer_(consumer) {}

    void Substitute(const Value& value, bool) {
        if (wanted_) {
            AppendValueText(chunk_, value, Escaping::None, text_);
        }
    }

    void Piece(const Program& program, const Instruction& piece) {
        switch (piece.Code) {
            case Operation::Element:
                OpenElement(program.TextOf(piece));
                break;
            case Operation::EndEmptyElement:
            case Operation::EndElement:
                CloseElement();
                break;
            case Operation::Attribute:
                attribute_ = program.TextOf(piece);
                text_.Clear();
                break;
            case Operation::EndAttribute:
                CloseAttribute();
                break;
            default:
                if (wanted_) {
                    AppendPieceText(program.Texts, piece, text_);
                }
                break;
        }
    }

  private:
    void OpenElement(Bytes name) {
        names_[depth_] = name;
        if (depth_ == 1) {
            wanted_ = consumer_.Wants(names_[1]);
        }
        ++depth_;
        isLeaf_ = true;
        hasName_ = false;
        text_.Clear();
    }

    void CloseElement() {
        --depth_;
        if (wanted_ && isLeaf_ && depth_ > 0) {
            consumer_.AddLeaf(
                {names_[1], names_[depth_ - 1], names_[depth_], depth_ == 1, hasName_, name_.View(), text_.View()});
        }
        isLeaf_ = false;
        wanted_ = wanted_ && depth_ > 1;
    }

    void CloseAttribute() {
        if (wanted_ && depth_ == 2) {
            consumer_.AddAttribute(attribute_, text_.View());
        }
        if (EqualsAscii(attribute_, "Name")) {
            hasName_ = true;
            std::swap(name_, text_);
        }
        text_.Clear();
    }

    Bytes chunk_;
    Consumer& consumer_;
    std::array<Bytes, MaximumDepth + 1> names_;
    std::uint32_t depth_ = 0;
    bool wanted_ = false;  // inside a section that the consumer asked for
    bool isLeaf_ = false;  // no child element since the last start tag
    bool hasName_ = false;
    Bytes attribute_;
    TextBuffer<wchar_t> name_;
    TextBuffer<wchar_t> text_;
};

class DataConsumer {
  public:
    explicit DataConsumer(std::vector<DataValue>& values) : values_(values) {}

    bool Wants(Bytes section) { return !EqualsAscii(section, "System") && !EqualsAscii(section, "RenderingInfo"); }

    void AddAttribute(Bytes, std::wstring_view) {}

    void AddLeaf(const Leaf& leaf) {
        if (leaf.IsSection && leaf.Text.empty()) {
            return;
        }
        if (count_ == values_.size()) {
            values_.emplace_back();
        }
        DataValue& value = values_[count_++];
        value.Text.assign(leaf.Text);
        value.Name.clear();
        if (leaf.HasName) {
            value.Name.assign(leaf.Name);
        } else if (!EqualsAscii(leaf.Element, "Data") || EqualsAscii(leaf.Section, "UserData")) {
            AppendUtf16(leaf.Element, value.Name);
        }
    }

    std::size_t Count() const { return count_; }

  private:
    std::vector<DataValue>& values_;
    std::size_t count_ = 0;
};

class RenderingTextConsumer {
  public:
    explicit RenderingTextConsumer(RenderingInfo& info) : info_(info) {}

    bool Wants(Bytes section) {
        const bool wanted = EqualsAscii(section, "RenderingInfo");
        found_ = found_ || wanted;
        return wanted;
    }

    void AddAttribute(Bytes attribute, std::wstring_view text) {
        if (EqualsAscii(attribute, "Culture")) {
            info_.Culture.assign(text);
        }
    }

    void AddLeaf(const Leaf& leaf) {
        if (EqualsAscii(leaf.Element, "Keyword") && EqualsAscii(leaf.Parent, "Keywords")) {
            info_.Keywords.emplace_back(leaf.Text);
            return;
        }
        struct NamedText {
            std::string_view Name;
            std::wstring& Text;
        };
        const NamedText texts[] = {{"Message", info_.Message}, {"Level", info_.Level},
                                   {"Task", info_.Task},       {"Opcode", info_.Opcode},
                                   {"Channel", info_.Channel}, {"Provider", info_.Provider}};
        for (const NamedText& text : texts) {
            if (EqualsAscii(leaf.Element, text.Name) && EqualsAscii(leaf.Parent, "RenderingInfo")) {
                text.Text.assign(leaf.Text);
            }
        }
    }

    bool Found() const { return found_; }

  private:
    RenderingInfo& info_;
    bool found_ = false;
};

template <typename Consumer>
bool ReadLeaves(ByteReader reader, TemplateStore& templates, ValueList& working, std::int64_t budget,
                Consumer& consumer) {
    LeafHandler<Consumer> handler(templates.Chunk(), consumer);
    return ProgramRunner(templates, working, handler, budget).RunEvent(reader);
}

}  // namespace

bool ReadDataValues(ByteReader reader, TemplateStore& templates, ValueList& working, std::int64_t budget,
                    std::vector<DataValue>& values) {
    DataConsumer consumer(values);
    const bool read = ReadLeaves(reader, templates, working, budget, consumer);
    values.resize(read ? consumer.Count() : 0);
    return read;
}

bool ReadRenderingTexts(ByteReader reader, TemplateStore& templates, ValueList& working, std::int64_t budget,
                        RenderingInfo& info) {
    info = {};
    RenderingTextConsumer consumer(info);
    return ReadLeaves(reader, templates, working, budget, consumer) && consumer.Found();
}

}  // namespace corvina::evtx
