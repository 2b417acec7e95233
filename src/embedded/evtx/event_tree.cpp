#include "embedded/evtx/event_tree.h"

#include "embedded/evtx/piece_text.h"
#include "embedded/evtx/value_text.h"

namespace corvina::evtx {

std::span<const EventTree::Piece> EventTree::PiecesOf(const Node& node) const {
    const std::span<const Piece> pieces = node.Kind == NodeKind::Attribute ? attributePieces_ : contentPieces_;
    return pieces.subspan(node.FirstPiece, node.PieceEnd - node.FirstPiece);
}

std::optional<Value> EventTree::OnlyValueOf(const Node& node) const {
    const std::span<const Piece> pieces = PiecesOf(node);
    if (pieces.size() != 1 || pieces[0].Code != Operation::Substitution) {
        return std::nullopt;
    }
    return pieces[0].Content;
}

void EventTree::AppendText(const Node& node, TextBuffer<wchar_t>& text) const {
    for (const Piece& piece : PiecesOf(node)) {
        if (piece.Code == Operation::Substitution) {
            AppendValueText(chunk_, piece.Content, Escaping::None, text);
        } else {
            Instruction instruction;
            instruction.Code = piece.Code;
            instruction.Place = piece.Content.Offset;
            instruction.Length = piece.Content.Size;
            AppendPieceText(piece.Texts, instruction, text);
        }
    }
}

}  // namespace corvina::evtx
