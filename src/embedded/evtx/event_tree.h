// A whole event as a tree of elements, attributes and texts with their typed values, light enough to be made for one
// event after another while a filter looks for some of them. Nothing is copied: values are places in the event's chunk,
// names are in it or in its templates.
//
// The nodes are in document order: an element is followed by its attributes, then by its elements and texts, each with
// all that is in it. Namespaces do not count: names are without prefix, and declarations are left out.
//
// System values are single: of several System elements, and of several elements in it that hold the same value, the
// first is in the tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "embedded/evtx/program.h"
#include "embedded/evtx/system_field.h"
#include "embedded/evtx/system_values.h"
#include "embedded/evtx/text_buffer.h"
#include "embedded/evtx/value.h"

namespace corvina::evtx {

class EventTree {
  public:
    enum class NodeKind : std::uint8_t { Element, Attribute, Text };

    struct Node {
        NodeKind Kind = NodeKind::Element;
        std::optional<SystemField> Field;  // whose value it is; then the value is in System()
        std::span<const std::byte> Name;   // UTF-16; empty for texts
        std::uint32_t End = 0;             // index of the node after it and all that is in it
        // What its text is made of, with all that is in it: indices of pieces, those of attributes being a list of
        // their own.
        std::uint32_t FirstPiece = 0;
        std::uint32_t PieceEnd = 0;
    };

    std::span<const Node> Nodes() const { return nodes_; }
    std::span<const std::byte> Chunk() const { return chunk_; }

    // The only value that a node's text is made of; none when there are several pieces, a literal one or none at all.
    std::optional<Value> OnlyValueOf(const Node& node) const;

    // Appends a node's whole text: of an element, that of the elements in it as well.
    void AppendText(const Node& node, TextBuffer<wchar_t>& text) const;

    // The System values of the nodes that have a field. Others may be left from another event.
    const SystemValues& System() const { return system_; }

  private:
    friend class EventTreeBuilder;

    // A value, or a literal piece of the structure.
    struct Piece {
        Operation Code = Operation::Substitution;
        Value Content;                     // of a literal piece: Offset and Size are the instruction's Place and Length
        const std::byte* Texts = nullptr;  // of a literal piece: what its place counts from
    };

    std::span<const Piece> PiecesOf(const Node& node) const;

    std::span<const std::byte> chunk_;
    std::vector<Node> nodes_;
    std::vector<Piece> contentPieces_;
    std::vector<Piece> attributePieces_;
    SystemValues system_;
};

}  // namespace corvina::evtx
