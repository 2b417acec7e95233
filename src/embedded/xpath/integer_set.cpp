#include "embedded/xpath/integer_set.h"

#include <algorithm>
#include <limits>

namespace corvina::xpath {
namespace {

constexpr std::uint64_t Maximum = std::numeric_limits<std::uint64_t>::max();

}  // namespace

IntegerSet IntegerSet::Of(Comparison comparison, const Integer& number) {
    IntegerSet set;
    if (!number.IsUnsigned64()) {
        // Below or above all numbers of the set's kind: any of them answers for all.
        if (Holds(comparison, Integer::Of(0) <=> number)) {
            set.Add(0, Maximum);
        }
        return set;
    }
    const std::uint64_t value = number.Low;
    if (value > 0 && Holds(comparison, std::strong_ordering::less)) {
        set.Add(0, value - 1);
    }
    if (Holds(comparison, std::strong_ordering::equal)) {
        set.Add(value, value);
    }
    if (value < Maximum && Holds(comparison, std::strong_ordering::greater)) {
        set.Add(value + 1, Maximum);
    }
    return UnionOf({&set, 1});
}

IntegerSet IntegerSet::UnionOf(std::span<const IntegerSet> sets) {
    std::vector<Range> ranges;
    for (const IntegerSet& set : sets) {
        ranges.insert(ranges.end(), set.ranges_.begin(), set.ranges_.end());
    }
    std::sort(ranges.begin(), ranges.end(),
              [](const Range& left, const Range& right) { return left.First < right.First; });
    IntegerSet result;
    for (const Range& range : ranges) {
        // Neighbours become one range; nothing comes after the largest number.
        if (!result.ranges_.empty() &&
            (result.ranges_.back().Last == Maximum || range.First <= result.ranges_.back().Last + 1)) {
            result.ranges_.back().Last = std::max(result.ranges_.back().Last, range.Last);
        } else {
            result.ranges_.push_back(range);
        }
    }
    return result;
}

IntegerSet IntegerSet::IntersectionOf(std::span<const IntegerSet> sets) {
    // What is missing in none of them. So any number of sets takes one pass.
    std::vector<IntegerSet> missing;
    for (const IntegerSet& set : sets) {
        missing.push_back(set.Complement());
    }
    return UnionOf(missing).Complement();
}

IntegerSet IntegerSet::Complement() const {
    IntegerSet result;
    std::uint64_t next = 0;
    for (const Range& range : ranges_) {
        if (range.First > next) {
            result.Add(next, range.First - 1);
        }
        if (range.Last == Maximum) {
            return result;
        }
        next = range.Last + 1;
    }
    result.Add(next, Maximum);
    return result;
}

bool IntegerSet::Has(std::uint64_t number) const {
    const auto behind = std::upper_bound(ranges_.begin(), ranges_.end(), number,
                                         [](std::uint64_t value, const Range& range) { return value < range.First; });
    return behind != ranges_.begin() && number <= std::prev(behind)->Last;
}

std::optional<std::uint64_t> IntegerSet::OnlyNumber() const {
    const bool single = ranges_.size() == 1 && ranges_[0].First == ranges_[0].Last;
    return single ? std::optional(ranges_[0].First) : std::nullopt;
}

}  // namespace corvina::xpath
