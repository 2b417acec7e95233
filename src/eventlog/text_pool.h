// A pool in which equal texts stand once. A reference is the place of a text, counted in units of two characters, so
// that 32 bits reach sixteen thousand million bytes and no table of texts is needed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "eventlog/event_row.h"

namespace corvina {

class TextPool {
  public:
    // Longer texts are cut.
    static constexpr std::size_t MaximumLength = std::size_t{16} << 20;

    TextPool();

    // Drops all texts and gives their memory back.
    void Clear();

    // The same text always gives the same reference. Throws std::bad_alloc when memory or references run out.
    TextReference Add(std::wstring_view text);

    // The text, followed by a zero character; empty for a reference that is not one of this pool.
    std::wstring_view Text(TextReference reference) const;

    std::size_t MemoryUsed() const;

  private:
    static constexpr std::size_t UnitLength = 2;        // characters
    static constexpr std::size_t BlockUnits = 1 << 14;  // units

    struct Slot {
        std::uint32_t Hash = 0;
        std::uint32_t Reference = 0;  // 0: the slot is free
    };

    std::uint32_t Hash(std::wstring_view text) const;
    wchar_t* Place(std::uint32_t reference) const;
    std::uint32_t Allocate(std::size_t length);
    void AddBlock(std::size_t blocks);
    void EnsureFreeSlot();

    // A text longer than a block stands in one of its own, which takes several block numbers; the extra ones are null.
    std::vector<std::unique_ptr<wchar_t[]>> blocks_;
    std::size_t usedUnits_ = BlockUnits;  // in the block that is being filled
    std::size_t fillBlock_ = 0;
    std::vector<Slot> table_;
    std::size_t texts_ = 0;
    std::uint64_t seed_;  // texts come from outside: nobody may know which of them collide
};

}  // namespace corvina
