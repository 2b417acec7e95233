// What the text of a filter says, as a tree. Made by the parser, never changed afterwards.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "embedded/xpath/comparison.h"
#include "embedded/xpath/literal.h"

namespace corvina::xpath {

struct Expression;

enum class NodeTest : std::uint8_t { AnyElement, Element, AnyAttribute, Attribute, Text };

// Steps may not have more predicates than this.
inline constexpr std::size_t MostPredicates = 16;

struct Step {
    NodeTest Test = NodeTest::AnyElement;
    std::string Name;  // UTF-16 little-endian, as names stand in events; for the tests that have one
    std::vector<Expression> Predicates;
};

// From the context down, at least one step.
struct Path {
    std::vector<Step> Steps;
};

// What a function is given: a path, of which the first node counts, or a constant.
using Argument = std::variant<Path, Literal>;

struct BandCall {
    Argument Left;
    Argument Right;
};

// The milliseconds from one point in time to another.
struct TimeDiffCall {
    Argument From;
    Argument To;
};

struct PositionCall {};

using Operand = std::variant<Path, BandCall, TimeDiffCall, PositionCall>;

struct Expression {
    enum class Kind : std::uint8_t {
        Or,       // of Parts
        And,      // of Parts
        Exists,   // the path What selects something
        NonZero,  // the function call What gives a number other than zero
        Compare,  // What with With
    };

    Kind Is = Kind::Exists;
    std::vector<Expression> Parts;
    Operand What;
    Comparison How = Comparison::Equal;
    Literal With;
};

}  // namespace corvina::xpath
