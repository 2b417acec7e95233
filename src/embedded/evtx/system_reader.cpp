#include "embedded/evtx/system_reader.h"

#include "embedded/evtx/binary_xml_parser.h"
#include "embedded/evtx/program.h"
#include "embedded/evtx/system_fields.h"
#include "embedded/evtx/value_text.h"
#include "embedded/evtx/xml_text.h"

namespace corvina::evtx {
namespace {

// Finds the values in one child element of System.
class PlaceFinder {
  public:
    PlaceFinder(std::span<const std::byte> chunk, Program& program)
        : chunk_(chunk), list_(program.Structure), places_(program.SystemPlaces) {}

    void Find() {
        for (std::uint32_t index = 0; index < list_.size(); ++index) {
            if (IsElement(index, 0, "Event")) {
                FindSystem(index + 1, list_[index].End);
            }
        }
    }

  private:
    void FindSystem(std::uint32_t begin, std::uint32_t end) {
        for (std::uint32_t index = begin; index < end; ++index) {
            if (IsElement(index, 1, "System")) {
                FindFields(index + 1, list_[index].End);
                return;
            }
        }
    }

    void FindFields(std::uint32_t begin, std::uint32_t end) {
        SystemPlace place;
        for (std::uint32_t index = begin; index < end; ++index) {
            const Instruction& instruction = list_[index];
            if (instruction.Depth != 2) {
                continue;
            }
            if (instruction.Code == Operation::SkipIfNull) {
                place.HasDependency = true;
                place.Dependency = instruction.Slot;
            } else if (instruction.Code == Operation::Element) {
                FindInElement(index, place);
                place = {};
                index = instruction.End - 1;
            }
        }
    }

    void FindInElement(std::uint32_t element, SystemPlace place) {
        std::uint32_t index = element + 1;
        while (list_[index].Code == Operation::Attribute) {
            AddPlace(SystemFieldOf(NameAt(element), NameAt(index)), place, index + 1, list_[index].End - 1);
            index = list_[index].End;
        }
        // What is left is the end of the start tag, the content and the end of the element, or just an empty element's
        // end.
        if (list_[index].Code == Operation::EndStartTag) {
            AddPlace(SystemFieldOf(NameAt(element)), place, index + 1, list_[element].End - 1);
        }
    }

    void AddPlace(std::optional<SystemField> field, SystemPlace place, std::uint32_t begin, std::uint32_t end) {
        if (field) {
            place.Field = *field;
            place.Begin = begin;
            place.End = end;
            places_.push_back(place);
        }
    }

    bool IsElement(std::uint32_t index, std::uint32_t depth, std::string_view name) const {
        return list_[index].Code == Operation::Element && list_[index].Depth == depth &&
               EqualsAscii(NameAt(index), name);
    }

    std::span<const std::byte> NameAt(std::uint32_t index) const {
        return chunk_.subspan(list_[index].Place, 2 * std::size_t{list_[index].Length});
    }

    std::span<const std::byte> chunk_;
    const InstructionList& list_;
    std::vector<SystemPlace>& places_;
};

class PlaceReader {
  public:
    PlaceReader(std::span<const std::byte> chunk, const std::vector<Value>& slots, SystemValues& values)
        : chunk_(chunk), slots_(slots), values_(values) {}

    void Read(const InstructionList& list, const SystemPlace& place) {
        if (place.HasDependency && SlotValue(place.Dependency).IsNull()) {
            return;
        }
        if (place.End - place.Begin == 1 && list[place.Begin].Code == Operation::Substitution) {
            SetSystemField(place.Field, chunk_, SlotValue(list[place.Begin].Slot), values_);
            return;
        }
        text_.Clear();
        for (std::uint32_t index = place.Begin; index < place.End; ++index) {
            AppendPiece(list[index]);
        }
        SetSystemField(place.Field, text_.View(), values_);
    }

  private:
    // An array repeats its element; System values are single, so the first one counts.
    Value SlotValue(std::uint16_t slot) const {
        Value value = slot < slots_.size() ? slots_[slot] : Value{};
        if (value.IsArray) {
            ArrayItems items(chunk_, value);
            Value first;
            value = items.Next(first) ? first : Value{};
        }
        return value;
    }

    void AppendPiece(const Instruction& piece) {
        switch (piece.Code) {
            case Operation::Substitution:
                AppendValueText(chunk_, SlotValue(piece.Slot), Escaping::None, text_);
                break;
            case Operation::Text:
            case Operation::CharacterData:
                AppendUtf16Text(chunk_.subspan(piece.Place, 2 * std::size_t{piece.Length}), Escaping::None, text_);
                break;
            case Operation::Character:
                AppendCharacter(piece.Place, Escaping::None, text_);
                break;
            default:
                break;
        }
    }

    std::span<const std::byte> chunk_;
    const std::vector<Value>& slots_;
    SystemValues& values_;
    TextBuffer<wchar_t> text_;
};

}  // namespace

bool ReadSystemValues(ByteReader reader, TemplateStore& templates, std::vector<Value>& working, SystemValues& values) {
    values.Clear();
    working.clear();
    std::uint8_t byte = 0;
    Program direct;
    Program* program = &direct;
    if (!SkipFragmentHeaders(reader) || !reader.Peek(byte)) {
        return false;
    }
    if (byte == token::TemplateInstance) {
        reader.Skip(1);
        program = templates.ReadInstance(reader, working);
    } else if (!ParseElements(reader, false, direct)) {
        return false;
    }
    if (program == nullptr) {
        return false;
    }
    if (!program->SystemPlacesKnown) {
        PlaceFinder(templates.Chunk(), *program).Find();
        program->SystemPlacesKnown = true;
    }
    PlaceReader place(templates.Chunk(), working, values);
    for (const SystemPlace& systemPlace : program->SystemPlaces) {
        place.Read(program->Structure, systemPlace);
    }
    return true;
}

}  // namespace corvina::evtx
