// From the text of a filter to what it says.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "embedded/xpath/expression.h"

namespace corvina::xpath {

// Bounds of what is taken for a filter.
inline constexpr std::size_t LongestFilter = 64 * 1024;    // characters
inline constexpr std::size_t MostExpressions = 16 * 1024;  // comparisons, paths, "and"s and "or"s
inline constexpr std::size_t DeepestFilter = 64;           // brackets and parentheses inside each other

// Reads the language of the event log's filters, a subset of XPath 1.0: paths over the child and attribute axes, "*",
// names and text(), predicates, "or", "and", comparisons of a path or function with a constant, band, timediff and
// position. A filter is paths, joined by "or" and "and". `now` is the time that timediff with one argument counts up
// to: a file time, UTC. None when the text is anything else or beyond the bounds.
std::optional<Expression> ParseFilter(std::wstring_view text, std::uint64_t now);

}  // namespace corvina::xpath
