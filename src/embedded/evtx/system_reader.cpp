#include "embedded/evtx/system_reader.h"

#include <algorithm>
#include <array>

#include "embedded/evtx/binary_xml_parser.h"
#include "embedded/evtx/piece_text.h"
#include "embedded/evtx/program.h"
#include "embedded/evtx/system_fields.h"
#include "embedded/evtx/value_text.h"
#include "embedded/evtx/xml_text.h"

namespace corvina::evtx {
namespace {

bool HasPrefix(std::span<const std::byte> name) {
    for (std::size_t index = 0; index < name.size(); index += 2) {
        if (LoadUInt16(&name[index]) == u':') {
            return true;
        }
    }
    return false;
}

// Finds the System values in the structure of a whole event.
class LayoutFinder {
  public:
    explicit LayoutFinder(const Program& program) : program_(program), list_(program.Structure) {}

    SystemLayout Find() {
        layout_.IsPlain = true;
        const std::uint32_t root = FirstElement();
        if (root < list_.size() && EqualsAscii(NameAt(root), "Event")) {
            FindSystem(root + 1, list_[root].End);
        } else {
            layout_.IsPlain = false;
        }
        return std::move(layout_);
    }

  private:
    std::uint32_t FirstElement() const {
        std::uint32_t index = 0;
        while (index < list_.size() && list_[index].Code != Operation::Element) {
            ++index;
        }
        return index;
    }

    // The first System element counts. What is in front of it could become another one.
    void FindSystem(std::uint32_t begin, std::uint32_t end) {
        for (std::uint32_t index = begin; index < end; ++index) {
            const Instruction& instruction = list_[index];
            if (instruction.Depth != 1) {
                continue;
            }
            if (instruction.Code == Operation::SkipIfNull || instruction.Code == Operation::Substitution) {
                RequirePlain(instruction.InAttribute);
            } else if (instruction.Code == Operation::Element) {
                RequirePlain(!HasPrefix(NameAt(index)));
                if (EqualsAscii(NameAt(index), "System")) {
                    RequirePlain(instruction.Content == ContentKind::Fixed);
                    FindFields(index + 1, instruction.End);
                    return;
                }
                index = instruction.End - 1;
            }
        }
    }

    void FindFields(std::uint32_t begin, std::uint32_t end) {
        std::array<bool, SystemElementCount> seen{};
        SystemPlace place;
        for (std::uint32_t index = begin; index < end; ++index) {
            const Instruction& instruction = list_[index];
            if (instruction.Depth != 2) {
                continue;
            }
            if (instruction.Code == Operation::SkipIfNull) {
                AddDependency(instruction.Slot, place);
            } else if (instruction.Code == Operation::Element) {
                if (const auto element = SystemElementOf(NameAt(index))) {
                    RequirePlain(!seen[*element]);
                    seen[*element] = true;
                }
                FindInElement(index, place);
                place = {};
                index = instruction.End - 1;
            }
        }
    }

    void FindInElement(std::uint32_t element, SystemPlace place) {
        RequirePlain(!HasPrefix(NameAt(element)));
        if (list_[element].Content == ContentKind::Optional) {
            AddDependency(list_[element].Slot, place);
        }
        place.IsRepeated = list_[element].Content != ContentKind::Fixed;
        place.RepeatSlot = list_[element].Slot;
        std::uint32_t index = element + 1;
        while (list_[index].Code == Operation::Attribute) {
            RequirePlain(!HasPrefix(NameAt(index)));
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
        if (!field) {
            return;
        }
        place.Field = *field;
        place.Begin = begin;
        place.End = end;
        layout_.Places.push_back(place);
        for (std::uint32_t index = begin; index < end; ++index) {
            RequirePlain(list_[index].Code != Operation::Element);
        }
    }

    static void AddDependency(std::uint16_t slot, SystemPlace& place) {
        place.Dependencies[place.DependencyCount++] = slot;
    }

    void RequirePlain(bool condition) { layout_.IsPlain = layout_.IsPlain && condition; }

    std::span<const std::byte> NameAt(std::uint32_t index) const { return program_.TextOf(list_[index]); }

    const Program& program_;
    const InstructionList& list_;
    SystemLayout layout_;
};

class PlaceReader {
  public:
    PlaceReader(std::span<const std::byte> chunk, const ValueList& slots, SystemValues& values)
        : chunk_(chunk), slots_(slots), values_(values) {}

    // False when the value that was set may be another one than the event's XML has.
    bool Read(const Program& program, const SystemPlace& place) {
        const InstructionList& list = program.Structure;
        for (std::size_t index = 0; index < place.DependencyCount; ++index) {
            if (SlotValue(place.Dependencies[index]).IsNull()) {
                return true;
            }
        }
        if (place.IsRepeated && IsArrayWithoutItems(SlotValue(place.RepeatSlot))) {
            return true;
        }
        if (place.End - place.Begin == 1 && list[place.Begin].Code == Operation::Substitution) {
            const Value value = SlotValue(list[place.Begin].Slot);
            SetSystemField(place.Field, chunk_, value, values_);
            return !value.IsBinaryXml();
        }
        bool certain = true;
        text_.Clear();
        for (std::uint32_t index = place.Begin; index < place.End; ++index) {
            if (list[index].Code == Operation::Substitution) {
                const Value value = SlotValue(list[index].Slot);
                certain = certain && !value.IsArray && !value.IsBinaryXml();
                AppendValueText(chunk_, value, Escaping::None, text_);
            } else {
                AppendPieceText(program.Texts, list[index], text_);
            }
        }
        SetSystemField(place.Field, text_.View(), values_);
        return certain;
    }

  private:
    bool IsArrayWithoutItems(const Value& value) const {
        Value item;
        return value.IsArray && !ArrayItems(chunk_, value).Next(item);
    }

    Value SlotValue(std::uint16_t slot) const { return slot < slots_.Size() ? slots_[slot] : Value{}; }

    std::span<const std::byte> chunk_;
    const ValueList& slots_;
    SystemValues& values_;
    TextBuffer<wchar_t> text_;
};

SystemPlan MakePlan(SystemFieldSet wanted, const InstructionList& list, const SystemLayout& layout) {
    SystemPlan plan;
    plan.Wanted = wanted;
    const auto needSlot = [&plan](std::size_t slot) { plan.SlotCount = std::max(plan.SlotCount, slot + 1); };
    for (const SystemPlace& place : layout.Places) {
        if (!wanted.Has(place.Field)) {
            continue;
        }
        plan.Places.push_back(place);
        std::for_each_n(place.Dependencies.begin(), place.DependencyCount, needSlot);
        if (place.IsRepeated) {
            needSlot(place.RepeatSlot);
        }
        for (std::uint32_t index = place.Begin; index < place.End; ++index) {
            if (list[index].Code == Operation::Substitution) {
                needSlot(list[index].Slot);
            }
        }
    }
    return plan;
}

// Readers ask for the same few sets of fields again and again.
const SystemPlan& PlanFor(SystemFieldSet wanted, const InstructionList& list, SystemLayout& layout) {
    constexpr std::size_t MostPlans = 8;
    for (const SystemPlan& plan : layout.Plans) {
        if (plan.Wanted == wanted) {
            return plan;
        }
    }
    if (layout.Plans.size() == MostPlans) {
        layout.Plans.clear();
    }
    return layout.Plans.emplace_back(MakePlan(wanted, list, layout));
}

void ClearSystemFields(SystemFieldSet fields, SystemValues& values) {
    while (!fields.IsEmpty()) {
        const SystemField field = fields.First();
        ClearSystemField(field, values);
        fields.Remove(field);
    }
}

}  // namespace

bool ReadSystemValues(ByteReader reader, TemplateStore& templates, ValueList& working, SystemFieldSet wanted,
                      SystemValues& values, SystemFieldSet& certain) {
    ClearSystemFields(wanted, values);
    certain = {};
    working.CutTo(0);
    std::uint8_t byte = 0;
    Program direct;
    Program* program = &direct;
    if (!SkipFragmentHeaders(reader) || !reader.Peek(byte)) {
        return false;
    }
    const bool isInstance = byte == token::TemplateInstance;
    if (isInstance) {
        reader.Skip(1);
        ChunkTemplate* const found = templates.ReadInstance(reader);
        program = found == nullptr ? nullptr : found->Code.get();
    } else if (!ParseElements(reader, direct)) {
        return false;
    }
    if (program == nullptr) {
        return false;
    }
    if (!program->System) {
        program->System = LayoutFinder(*program).Find();
    }
    const SystemPlan& plan = PlanFor(wanted, program->Structure, *program->System);
    if (isInstance && !ReadInstanceValues(reader, working, plan.SlotCount)) {
        return false;
    }
    if (program->System->IsPlain) {
        certain = wanted;
    }
    PlaceReader reading(templates.Chunk(), working, values);
    for (const SystemPlace& place : plan.Places) {
        if (!reading.Read(*program, place)) {
            certain.Remove(place.Field);
        }
    }
    return true;
}

}  // namespace corvina::evtx
