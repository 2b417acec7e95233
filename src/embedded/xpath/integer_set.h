// Sets of unsigned numbers as ranges: what a list of event identifiers comes down to. Looking up a number takes a few
// steps, however long the list was.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "embedded/xpath/comparison.h"
#include "embedded/xpath/integer.h"

namespace corvina::xpath {

class IntegerSet {
  public:
    // The numbers n for which "n comparison number" holds.
    static IntegerSet Of(Comparison comparison, const Integer& number);
    static IntegerSet UnionOf(std::span<const IntegerSet> sets);
    static IntegerSet IntersectionOf(std::span<const IntegerSet> sets);

    bool IsEmpty() const { return ranges_.empty(); }
    bool Has(std::uint64_t number) const;

    // The only number there is; none when there are more or none at all.
    std::optional<std::uint64_t> OnlyNumber() const;

  private:
    struct Range {
        std::uint64_t First = 0;
        std::uint64_t Last = 0;
    };

    void Add(std::uint64_t first, std::uint64_t last) { ranges_.push_back({first, last}); }
    IntegerSet Complement() const;

    std::vector<Range> ranges_;  // in order, with a gap between each and the next
};

}  // namespace corvina::xpath
