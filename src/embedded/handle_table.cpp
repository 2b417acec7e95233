#include "embedded/handle_table.h"

#include <utility>

namespace corvina::embedded {
namespace {

// The low bits of a handle are the place plus one (so that no handle is null), the others the generation.
constexpr unsigned HandleBits = sizeof(std::uintptr_t) * 8;
constexpr unsigned PlaceBits = HandleBits >= 64 ? 32 : 20;
constexpr std::uintptr_t PlaceMask = (std::uintptr_t{1} << PlaceBits) - 1;
constexpr std::uintptr_t GenerationMask = (std::uintptr_t{1} << (HandleBits - PlaceBits)) - 1;
constexpr std::size_t NoPlace = static_cast<std::size_t>(-1);

EVT_HANDLE HandleOf(std::size_t place, std::uintptr_t generation) {
    // The handle is a number in a pointer's clothes; it is never followed.
    return reinterpret_cast<EVT_HANDLE>((generation << PlaceBits) | (place + 1));  // NOLINT(performance-no-int-to-ptr)
}

}  // namespace

// Generations start differently in each table, so that another table's handles are not taken for this one's.
HandleTable::HandleTable()
    : firstFree_(NoPlace), firstGeneration_((reinterpret_cast<std::uintptr_t>(this) >> 4) * 40503) {}

EVT_HANDLE HandleTable::Add(std::unique_ptr<HandleObject> object) {
    std::size_t place = firstFree_;
    if (place == NoPlace) {
        place = slots_.size();
        if (place >= PlaceMask) {
            return nullptr;
        }
        slots_.emplace_back();
        slots_[place].Generation = firstGeneration_ & GenerationMask;
    } else {
        firstFree_ = slots_[place].NextFree;
    }
    slots_[place].Object = std::move(object);
    ++openCount_;
    return HandleOf(place, slots_[place].Generation);
}

const HandleTable::Slot* HandleTable::FindSlot(EVT_HANDLE handle) const {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    const std::size_t place = (value & PlaceMask) - 1;
    if (place >= slots_.size() || slots_[place].Object == nullptr || slots_[place].Generation != value >> PlaceBits) {
        return nullptr;
    }
    return &slots_[place];
}

std::unique_ptr<HandleObject> HandleTable::Remove(EVT_HANDLE handle) {
    const Slot* const found = FindSlot(handle);
    if (found == nullptr) {
        return nullptr;
    }
    const auto place = static_cast<std::size_t>(found - slots_.data());
    Slot& slot = slots_[place];
    slot.Generation = (slot.Generation + 1) & GenerationMask;
    slot.NextFree = firstFree_;
    firstFree_ = place;
    --openCount_;
    return std::move(slot.Object);
}

}  // namespace corvina::embedded
