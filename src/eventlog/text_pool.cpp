#include "eventlog/text_pool.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <random>

namespace corvina {

namespace {

// Texts end with a zero character, the empty one too.
constexpr std::wstring_view NoText = L"";

constexpr std::size_t FirstTableSize = 1024;  // a power of two, as every later size

std::uint64_t RandomSeed() {
    std::random_device device;
    return (static_cast<std::uint64_t>(device()) << 32) ^ device();
}

std::uint64_t Mix(std::uint64_t value) {
    value ^= value >> 32;
    value *= 0x9E3779B97F4A7C15ULL;
    value ^= value >> 29;
    return value;
}

}  // namespace

TextPool::TextPool() : seed_(RandomSeed()) {}

void TextPool::Clear() {
    blocks_ = std::vector<std::unique_ptr<wchar_t[]>>();
    table_ = std::vector<Slot>();
    usedUnits_ = BlockUnits;
    fillBlock_ = 0;
    texts_ = 0;
}

std::uint32_t TextPool::Hash(std::wstring_view text) const {
    std::uint64_t hash = seed_ ^ text.size();
    const char* bytes = reinterpret_cast<const char*>(text.data());
    std::size_t left = text.size() * sizeof(wchar_t);
    while (left >= sizeof(std::uint64_t)) {
        std::uint64_t piece = 0;
        std::memcpy(&piece, bytes, sizeof piece);
        hash = Mix(hash ^ piece);
        bytes += sizeof piece;
        left -= sizeof piece;
    }
    std::uint64_t piece = 0;
    std::memcpy(&piece, bytes, left);
    hash = Mix(Mix(hash ^ piece) ^ seed_);
    return static_cast<std::uint32_t>(hash >> 32);
}

wchar_t* TextPool::Place(std::uint32_t reference) const {
    return blocks_[reference / BlockUnits].get() + (reference % BlockUnits) * UnitLength;
}

std::wstring_view TextPool::Text(TextReference reference) const {
    const auto place = static_cast<std::uint32_t>(reference);
    if (place == 0) {
        return NoText;
    }
    if (place / BlockUnits >= blocks_.size() || blocks_[place / BlockUnits] == nullptr) {
        return NoText;
    }
    const wchar_t* start = Place(place);
    std::uint32_t length = 0;
    std::memcpy(&length, start, sizeof length);
    return {start + UnitLength, length};
}

TextReference TextPool::Add(std::wstring_view text) {
    text = text.substr(0, MaximumLength);
    if (text.empty()) {
        return TextReference::Empty;
    }
    EnsureFreeSlot();
    const std::uint32_t hash = Hash(text);
    const std::size_t mask = table_.size() - 1;
    std::size_t place = hash & mask;
    while (table_[place].Reference != 0) {
        const Slot& slot = table_[place];
        if (slot.Hash == hash && Text(TextReference{slot.Reference}) == text) {
            return TextReference{slot.Reference};
        }
        place = (place + 1) & mask;
    }
    const std::uint32_t reference = Allocate(text.size());
    wchar_t* start = Place(reference);
    const auto length = static_cast<std::uint32_t>(text.size());
    std::memcpy(start, &length, sizeof length);
    std::copy(text.begin(), text.end(), start + UnitLength);
    start[UnitLength + text.size()] = L'\0';
    table_[place] = {hash, reference};
    ++texts_;
    return TextReference{reference};
}

std::uint32_t TextPool::Allocate(std::size_t length) {
    const std::size_t units = 1 + (length + 1 + UnitLength - 1) / UnitLength;
    if (units > BlockUnits) {
        if (blocks_.empty()) {
            AddBlock(1);  // so that no text has reference 0
            usedUnits_ = 1;
        }
        const std::size_t first = blocks_.size();
        AddBlock((units + BlockUnits - 1) / BlockUnits);
        return static_cast<std::uint32_t>(first * BlockUnits);
    }
    if (usedUnits_ + units > BlockUnits) {
        AddBlock(1);
        fillBlock_ = blocks_.size() - 1;
        usedUnits_ = fillBlock_ == 0 ? 1 : 0;  // reference 0 stands for the empty text
    }
    const auto reference = static_cast<std::uint32_t>(fillBlock_ * BlockUnits + usedUnits_);
    usedUnits_ += units;
    return reference;
}

void TextPool::AddBlock(std::size_t blocks) {
    if (blocks_.size() + blocks > (std::size_t{1} << 32) / BlockUnits) {
        throw std::bad_alloc();
    }
    std::unique_ptr<wchar_t[]> block(new wchar_t[blocks * BlockUnits * UnitLength]);
    blocks_.push_back(std::move(block));
    blocks_.resize(blocks_.size() + blocks - 1);
}

// Called before a search, so that it always ends at a free slot, even when growing has failed before.
void TextPool::EnsureFreeSlot() {
    if ((texts_ + 1) * 10 <= table_.size() * 7) {
        return;
    }
    std::vector<Slot> larger(table_.empty() ? FirstTableSize : table_.size() * 2);
    const std::size_t mask = larger.size() - 1;
    for (const Slot& slot : table_) {
        if (slot.Reference == 0) {
            continue;
        }
        std::size_t place = slot.Hash & mask;
        while (larger[place].Reference != 0) {
            place = (place + 1) & mask;
        }
        larger[place] = slot;
    }
    table_ = std::move(larger);
}

std::size_t TextPool::MemoryUsed() const {
    return blocks_.size() * BlockUnits * UnitLength * sizeof(wchar_t) + table_.capacity() * sizeof(Slot) +
           blocks_.capacity() * sizeof(blocks_[0]);
}

}  // namespace corvina
