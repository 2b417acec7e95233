// What a filter makes of the values of events: the only place that says when a comparison holds and what the functions
// of the language give, for values that were found in an event's tree and for System values that were read without it.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include "base/identifiers.h"
#include "embedded/evtx/event_tree.h"
#include "embedded/evtx/system_values.h"
#include "embedded/xpath/integer.h"
#include "embedded/xpath/literal.h"

namespace corvina::xpath {

enum class Comparison : std::uint8_t { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual };

// Whether "a comparison b" holds when a and b are in this order.
constexpr bool Holds(Comparison comparison, std::partial_ordering order) {
    switch (comparison) {
        case Comparison::Equal:
            return order == 0;
        case Comparison::NotEqual:
            return order < 0 || order > 0;
        case Comparison::Less:
            return order < 0;
        case Comparison::LessOrEqual:
            return order <= 0;
        case Comparison::Greater:
            return order > 0;
        default:
            return order >= 0;
    }
}

// The same comparison with its sides exchanged.
Comparison Mirrored(Comparison comparison);

struct FileTime {
    std::uint64_t Ticks = 0;  // UTC
};

// A security identifier in its binary form.
struct SidView {
    std::span<const std::byte> Bytes;
};

// The value of a part of an event, as far as comparisons tell values apart. Texts and identifiers are not owned.
using Scalar = std::variant<std::monostate, Integer, double, bool, FileTime, GuidBytes, SidView, std::wstring_view>;

// The value of a System field; nothing when it is absent. Of the texts it cannot be told here whether they are absent
// or empty; they are texts.
Scalar ScalarOf(evtx::SystemField field, const evtx::SystemValues& values);

// The value of a node. `text` is memory that a text is made in.
Scalar ScalarOf(const evtx::EventTree& tree, const evtx::EventTree::Node& node, evtx::TextBuffer<wchar_t>& text);

// Compares by the kind of the event's value. Numbers, times and Booleans are compared as such, GUIDs and security
// identifiers can only be equal or not, texts are equal when all their characters are; a text is taken as a number when
// it is compared with one, and as a number or a time when its order is asked for. What cannot be compared that way is
// neither equal nor unequal.
bool Compare(const Scalar& value, Comparison comparison, const Literal& literal);

// The 64 bits of a number or of a text that is one.
std::optional<std::uint64_t> BitsOf(const Scalar& value);

// The point in time that a value is: a time, a text that is one, or a number of ticks.
std::optional<std::uint64_t> TimeOf(const Scalar& value);

// From the first point in time to the second, in milliseconds; negative when the second comes first.
Integer MillisecondsBetween(std::uint64_t from, std::uint64_t to);

}  // namespace corvina::xpath
