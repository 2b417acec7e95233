#include "embedded/evtx/event_tree_reader.h"

#include <array>
#include <utility>

#include "embedded/evtx/program_runner.h"
#include "embedded/evtx/system_fields.h"

namespace corvina::evtx {
namespace {

using Bytes = std::span<const std::byte>;

// No event that anybody wrote comes near; a record that was made up could ask for some hundred megabytes.
constexpr std::size_t MostItems = std::size_t{256} * 1024;

Bytes WithoutPrefix(Bytes name) {
    for (std::size_t index = 0; index < name.size(); index += 2) {
        if (LoadUInt16(&name[index]) == u':') {
            return name.subspan(index + 2);
        }
    }
    return name;
}

// "xmlns" and "xmlns:..."
bool IsDeclaration(Bytes attribute) {
    constexpr std::size_t Size = 2 * 5;
    return attribute.size() >= Size && EqualsAscii(attribute.first(Size), "xmlns") &&
           (attribute.size() == Size || LoadUInt16(&attribute[Size]) == u':');
}

}  // namespace

// Takes the pieces of an event from the runner.
class EventTreeBuilder {
  public:
    static constexpr bool WantsStructure = true;

    EventTreeBuilder(Bytes chunk, EventTree& tree) : tree_(tree) {
        tree_.chunk_ = chunk;
        tree_.nodes_.clear();
        tree_.contentPieces_.clear();
        tree_.attributePieces_.clear();
    }

    bool IsFull() const { return full_; }

    void Substitute(const Value& value, bool) {
        if (!value.IsNull() && value.Size > 0) {
            AddPiece({Operation::Substitution, value, nullptr});
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
                OpenAttribute(program.TextOf(piece));
                break;
            case Operation::EndAttribute:
                CloseAttribute();
                break;
            case Operation::Text:
            case Operation::CharacterData:
            case Operation::Character:
            case Operation::Entity:
                AddPiece({piece.Code, {ValueType::Text, false, piece.Place, piece.Length}, program.Texts});
                break;
            default:
                break;
        }
    }

  private:
    using Node = EventTree::Node;
    using NodeKind = EventTree::NodeKind;

    bool IsLeftOut() const { return full_ || leftOutDepth_ > 0; }

    void OpenElement(Bytes fullName) {
        const Bytes name = WithoutPrefix(fullName);
        textOpen_ = false;
        if (IsLeftOut() || IsRepeatedInSystem(name)) {
            ++leftOutDepth_;
            return;
        }
        open_[depth_++] = AddNode(NodeKind::Element, name);
    }

    // Notes what System elements there are, and says whether one has been there already.
    bool IsRepeatedInSystem(Bytes name) {
        if (depth_ == 0) {
            isEvent_ = EqualsAscii(name, "Event");
        } else if (depth_ == 1) {
            inSystem_ = isEvent_ && EqualsAscii(name, "System");
            const bool repeated = inSystem_ && seenSystem_;
            seenSystem_ = seenSystem_ || inSystem_;
            return repeated;
        } else if (depth_ == 2 && inSystem_) {
            if (const auto element = SystemElementOf(name)) {
                return std::exchange(seenInSystem_[*element], true);
            }
        }
        return false;
    }

    void CloseElement() {
        textOpen_ = false;
        if (leftOutDepth_ > 0) {
            --leftOutDepth_;
            return;
        }
        const std::uint32_t index = open_[--depth_];
        Node& element = tree_.nodes_[index];
        element.End = static_cast<std::uint32_t>(tree_.nodes_.size());
        element.PieceEnd = static_cast<std::uint32_t>(tree_.contentPieces_.size());
        if (depth_ == 2 && inSystem_) {
            SetField(element, SystemFieldOf(element.Name));
        }
    }

    void OpenAttribute(Bytes name) {
        inAttribute_ = true;
        attributeKept_ = !IsLeftOut() && !IsDeclaration(name);
        if (attributeKept_) {
            AddNode(NodeKind::Attribute, WithoutPrefix(name));
            attributeKept_ = !full_;
        }
    }

    void CloseAttribute() {
        inAttribute_ = false;
        if (!attributeKept_) {
            return;
        }
        Node& attribute = tree_.nodes_.back();
        attribute.PieceEnd = static_cast<std::uint32_t>(tree_.attributePieces_.size());
        if (depth_ == 3 && inSystem_) {
            const Node& element = tree_.nodes_[open_[depth_ - 1]];
            SetField(attribute, SystemFieldOf(element.Name, attribute.Name));
        }
    }

    void SetField(Node& node, std::optional<SystemField> field) {
        if (!field) {
            return;
        }
        node.Field = field;
        ClearSystemField(*field, tree_.system_);
        if (const auto value = tree_.OnlyValueOf(node)) {
            SetSystemField(*field, tree_.chunk_, *value, tree_.system_);
            return;
        }
        text_.Clear();
        tree_.AppendText(node, text_);
        SetSystemField(*field, text_.View(), tree_.system_);
    }

    void AddPiece(const EventTree::Piece& piece) {
        if (IsLeftOut() || (inAttribute_ && !attributeKept_)) {
            return;
        }
        auto& pieces = inAttribute_ ? tree_.attributePieces_ : tree_.contentPieces_;
        if (pieces.size() == MostItems) {
            full_ = true;
            return;
        }
        if (!inAttribute_ && !textOpen_) {
            AddNode(NodeKind::Text, {});
            textOpen_ = true;
        }
        pieces.push_back(piece);
        if (!inAttribute_ && !full_) {
            tree_.nodes_.back().PieceEnd = static_cast<std::uint32_t>(pieces.size());
        }
    }

    std::uint32_t AddNode(NodeKind kind, Bytes name) {
        const auto index = static_cast<std::uint32_t>(tree_.nodes_.size());
        if (index == MostItems) {
            full_ = true;
            return 0;
        }
        const auto& pieces = kind == NodeKind::Attribute ? tree_.attributePieces_ : tree_.contentPieces_;
        Node& node = tree_.nodes_.emplace_back();
        node.Kind = kind;
        node.Name = name;
        node.End = index + 1;
        node.FirstPiece = static_cast<std::uint32_t>(pieces.size());
        node.PieceEnd = node.FirstPiece;
        return index;
    }

    EventTree& tree_;
    std::array<std::uint32_t, MaximumDepth + 1> open_{};
    std::uint32_t depth_ = 0;
    std::uint32_t leftOutDepth_ = 0;  // elements that are open and not in the tree
    bool full_ = false;
    bool textOpen_ = false;  // the last node is a text that goes on
    bool inAttribute_ = false;
    bool attributeKept_ = false;
    bool isEvent_ = false;  // the root
    bool inSystem_ = false;
    bool seenSystem_ = false;
    std::array<bool, SystemElementCount> seenInSystem_{};
    TextBuffer<wchar_t> text_;
};

bool ReadEventTree(ByteReader reader, TemplateStore& templates, ValueList& working, std::int64_t budget,
                   EventTree& tree) {
    EventTreeBuilder builder(templates.Chunk(), tree);
    return ProgramRunner(templates, working, builder, budget).RunEvent(reader) && !builder.IsFull();
}

}  // namespace corvina::evtx
