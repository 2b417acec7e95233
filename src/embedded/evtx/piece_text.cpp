#include "embedded/evtx/piece_text.h"

#include <optional>
#include <span>
#include <string_view>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/xml_text.h"

namespace corvina::evtx {
namespace {

// The character that a reference to one of XML's own entities stands for; none for other names.
std::optional<wchar_t> CharacterOfEntity(std::span<const std::byte> name) {
    struct Predefined {
        std::string_view Name;
        wchar_t Character;
    };
    constexpr Predefined Entities[] = {{"amp", L'&'}, {"lt", L'<'}, {"gt", L'>'}, {"apos", L'\''}, {"quot", L'"'}};
    for (const Predefined& entity : Entities) {
        if (EqualsAscii(name, entity.Name)) {
            return entity.Character;
        }
    }
    return std::nullopt;
}

}  // namespace

void AppendPieceText(const std::byte* texts, const Instruction& piece, TextBuffer<wchar_t>& text) {
    const auto utf16 = [&] { return std::span(texts + piece.Place, 2 * std::size_t{piece.Length}); };
    switch (piece.Code) {
        case Operation::Text:
        case Operation::CharacterData:
            AppendUtf16Text(utf16(), Escaping::None, text);
            break;
        case Operation::Character:
            AppendCharacter(piece.Place, Escaping::None, text);
            break;
        case Operation::Entity:
            if (const auto character = CharacterOfEntity(utf16())) {
                text.Append(*character);
            } else {
                text.Append(L'&');
                AppendUtf16Text(utf16(), Escaping::None, text);
                text.Append(L';');
            }
            break;
        default:
            break;
    }
}

}  // namespace corvina::evtx
