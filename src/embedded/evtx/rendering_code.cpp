#include "embedded/evtx/rendering_code.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/ascii.h"
#include "embedded/evtx/xml_characters.h"
#include "embedded/evtx/xml_text.h"

namespace corvina::evtx {
namespace {

class RenderingMaker {
  public:
    RenderingMaker(std::size_t longestLiterals, Program& program)
        : longestLiterals_(longestLiterals), program_(program) {}

    bool Make() {
        program_.Rendering.clear();
        program_.Rendering.reserve(program_.Structure.size() / 2);
        for (std::uint32_t index = 0; index < program_.Structure.size(); ++index) {
            ResolveEnds(index);
            Translate(program_.Structure[index]);
            if (literals_.Size() > longestLiterals_) {
                return false;
            }
        }
        ResolveEnds(static_cast<std::uint32_t>(program_.Structure.size()));
        AddRestOfLiteral();
        program_.Rendering.shrink_to_fit();
        program_.Literals.reserve(literals_.Size() + LiteralPadding);
        program_.Literals.assign(literals_.View());
        program_.Literals.append(LiteralPadding, '\0');
        program_.HasRendering = true;
        return true;
    }

  private:
    // An instruction of the rendering whose End is still the one of the structure.
    struct OpenEnd {
        std::uint32_t RenderingIndex = 0;
        std::uint32_t StructureEnd = 0;
    };

    void Translate(const Instruction& instruction) {
        switch (instruction.Code) {
            case Operation::SkipIfNull:
                if (!SaysTheSameAs(instruction, *(&instruction + 1))) {
                    AddConditional(instruction);
                }
                break;
            case Operation::Element:
                if (instruction.Content != ContentKind::Fixed) {
                    AddConditional(instruction);
                }
                names_[instruction.Depth] = &instruction;
                Put("<");
                PutTextOf(instruction, Escaping::None);
                break;
            case Operation::EndStartTag:
                Put(">");
                break;
            case Operation::EndEmptyElement:
                Put("/>");
                break;
            case Operation::EndElement:
                Put("</");
                PutTextOf(*names_[instruction.Depth], Escaping::None);
                Put(">");
                break;
            case Operation::Attribute:
                // An array does not repeat an attribute, so only a null value makes a difference.
                if (instruction.Content == ContentKind::Optional) {
                    AddConditional(instruction);
                }
                inAttribute_ = true;
                Put(" ");
                PutTextOf(instruction, Escaping::None);
                Put("='");
                break;
            case Operation::EndAttribute:
                Put("'");
                inAttribute_ = false;
                break;
            case Operation::Substitution:
                Add(instruction);
                break;
            default:
                TranslateContent(instruction);
                break;
        }
    }

    // Most elements are left out on account of the value that they would hold: then to see it once is enough. A
    // dependency stands right in front of its element.
    static bool SaysTheSameAs(const Instruction& dependency, const Instruction& element) {
        return element.Content == ContentKind::Optional && element.Slot == dependency.Slot;
    }

    void TranslateContent(const Instruction& instruction) {
        switch (instruction.Code) {
            case Operation::Text:
                PutTextOf(instruction, TextEscaping());
                break;
            case Operation::CharacterData:
                PutCharacterData(instruction);
                break;
            case Operation::Character:
                PutCharacterReference(instruction.Place);
                break;
            case Operation::Entity:
                PutEntity(instruction);
                break;
            case Operation::ProcessingTarget:
                Put("<?");
                PutTextOf(instruction, Escaping::None);
                break;
            case Operation::ProcessingData:
                PutProcessingData(instruction);
                break;
            default:
                break;
        }
    }

    // "]]>" would end the section, so it is divided between two sections.
    void PutCharacterData(const Instruction& instruction) {
        PutDivided(instruction, "<![CDATA[", "]]>", "]]]]><![CDATA[>", "]]>");
    }

    // "?>" would end the instruction; a blank keeps the two characters apart.
    void PutProcessingData(const Instruction& instruction) { PutDivided(instruction, " ", "?>", "? >", "?>"); }

    void PutDivided(const Instruction& instruction, std::string_view before, std::string_view forbidden,
                    std::string_view replacement, std::string_view after) {
        TextBuffer<char> text;
        AppendUtf16Text(program_.TextOf(instruction), Escaping::Forbidden, text);
        std::string_view rest = text.View();
        Put(before);
        for (auto place = rest.find(forbidden); place != std::string_view::npos; place = rest.find(forbidden)) {
            PutUtf8(rest.substr(0, place));
            Put(replacement);
            rest.remove_prefix(place + forbidden.size());
        }
        PutUtf8(rest);
        Put(after);
    }

    // Half surrogates and control characters cannot be referred to in XML either.
    void PutCharacterReference(char32_t character) {
        if (IsXmlCharacter(character)) {
            Put("&#" + std::to_string(static_cast<unsigned>(character)) + ";");
        } else {
            AppendCharacter(ReplacementCharacter, TextEscaping(), literals_);
        }
    }

    // An event has no document type, so only XML's own entities can be referred to; others are shown as what they are.
    void PutEntity(const Instruction& instruction) {
        constexpr std::array<std::string_view, 5> Predefined = {"amp", "lt", "gt", "apos", "quot"};
        TextBuffer<char> name;
        AppendUtf16Text(program_.TextOf(instruction), Escaping::None, name);
        Put(std::find(Predefined.begin(), Predefined.end(), name.View()) != Predefined.end() ? "&" : "&amp;");
        PutUtf8(name.View());
        Put(";");
    }

    Escaping TextEscaping() const { return inAttribute_ ? Escaping::Attribute : Escaping::Text; }

    void Put(std::string_view ascii) { AppendAscii(ascii, literals_); }
    void PutUtf8(std::string_view utf8) {
        char* out = literals_.Room(utf8.size());
        literals_.SetEnd(std::copy(utf8.begin(), utf8.end(), out));
    }
    void PutTextOf(const Instruction& instruction, Escaping escaping) {
        AppendUtf16Text(program_.TextOf(instruction), escaping, literals_);
    }

    void AddConditional(const Instruction& instruction) {
        openEnds_.push_back({static_cast<std::uint32_t>(program_.Rendering.size()), instruction.End});
        Add(instruction);
    }

    void ResolveEnds(std::uint32_t structureIndex) {
        while (!openEnds_.empty() && openEnds_.back().StructureEnd <= structureIndex) {
            AddRestOfLiteral();
            // A rendering has less than twice as many instructions as the structure: 16 bits hold the index.
            program_.Rendering[openEnds_.back().RenderingIndex].End =
                static_cast<std::uint16_t>(program_.Rendering.size());
            openEnds_.pop_back();
        }
    }

    // What was put since the last instruction is the literal in front of this one.
    void Add(const Instruction& instruction) {
        const std::string_view literal = literals_.View().substr(added_);
        Instruction& added = program_.Rendering.emplace_back(instruction);
        added.Place = static_cast<std::uint32_t>(added_);
        added.Length = static_cast<std::uint32_t>(literal.size());
        added.Ascii = IsAscii(literal);
        added_ = literals_.Size();
    }

    void AddRestOfLiteral() {
        if (literals_.Size() > added_) {
            Add({});
        }
    }

    std::size_t longestLiterals_;
    Program& program_;
    TextBuffer<char> literals_;
    std::size_t added_ = 0;  // how much of the literals belongs to instructions
    std::vector<OpenEnd> openEnds_;
    std::array<const Instruction*, MaximumDepth + 1> names_{};
    bool inAttribute_ = false;
};

}  // namespace

bool MakeRendering(std::size_t longestLiterals, Program& program) {
    return RenderingMaker(longestLiterals, program).Make();
}

}  // namespace corvina::evtx
