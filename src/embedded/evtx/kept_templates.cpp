#include "embedded/evtx/kept_templates.h"

#include <algorithm>
#include <utility>

namespace corvina::evtx {
namespace {

// What a program may come to in memory, in bytes at most: its structure, its rendering, its System places for several
// sets of fields, its form; its texts in all of them, which escaping makes longer. Usual ones take a fifth of it.
constexpr std::size_t CostOfAny = 1024;
constexpr std::size_t CostOfInstruction = 224;
constexpr std::size_t CostOfTextByte = 6;
constexpr std::size_t LargestCost = std::size_t{24} << 20;

bool HasText(const Instruction& instruction) {
    switch (instruction.Code) {
        case Operation::Element:
        case Operation::Attribute:
        case Operation::Text:
        case Operation::CharacterData:
        case Operation::Entity:
        case Operation::ProcessingTarget:
        case Operation::ProcessingData:
            return true;
        default:
            return false;
    }
}

std::size_t TextSize(const Program& program) {
    std::size_t size = 0;
    for (const Instruction& instruction : program.Structure) {
        size += HasText(instruction) ? program.TextOf(instruction).size() : 0;
    }
    return size;
}

void CopyTexts(std::size_t size, Program& program) {
    program.OwnTexts.reserve(size);
    for (Instruction& instruction : program.Structure) {
        if (HasText(instruction)) {
            const std::span<const std::byte> text = program.TextOf(instruction);
            instruction.Place = static_cast<std::uint32_t>(program.OwnTexts.size());
            program.OwnTexts.insert(program.OwnTexts.end(), text.begin(), text.end());
        }
    }
    program.Texts = program.OwnTexts.data();
}

}  // namespace

std::shared_ptr<Program> KeptTemplates::Find(const GuidBytes& identifier, const ByteReader& content) const {
    if (places_.empty()) {
        return nullptr;
    }
    for (const std::unique_ptr<const Entry>& entry : places_[PlaceOf(identifier)]) {
        if (entry != nullptr && entry->Identifier == identifier && entry->Form.IsFormOf(content)) {
            return entry->Compiled;
        }
    }
    return nullptr;
}

void KeptTemplates::Keep(const GuidBytes& identifier, const ByteReader& content, std::size_t contentEnd,
                         std::span<const NameReference> names, const std::shared_ptr<Program>& program) {
    const std::size_t textSize = TextSize(*program);
    const std::size_t cost = CostOfAny + CostOfInstruction * program->Structure.size() + CostOfTextByte * textSize;
    if (cost > LargestCost / 4) {
        return;
    }
    if (places_.empty() || cost > LargestCost - cost_) {
        cost_ = 0;
        places_.clear();
        places_.resize(Places);
    }
    auto entry = std::make_unique<const Entry>(
        Entry{identifier, DefinitionForm(content, contentEnd, names, *program), program, cost});
    CopyTexts(textSize, *program);
    Place& place = places_[PlaceOf(identifier)];
    cost_ += cost - (place.back() == nullptr ? 0 : place.back()->Cost);
    std::move_backward(place.begin(), place.end() - 1, place.end());
    place.front() = std::move(entry);
}

std::size_t KeptTemplates::PlaceOf(const GuidBytes& identifier) {
    constexpr std::uint64_t Spread = 0x9E3779B97F4A7C15;  // an odd number without pattern
    const std::uint64_t mixed = (LoadUInt64(identifier.data()) ^ LoadUInt64(identifier.data() + 8)) * Spread;
    return mixed >> 56;
}

}  // namespace corvina::evtx
