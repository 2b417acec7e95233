// The entry to regular expressions: does a pattern occur anywhere in a text?
//
// A pattern is a list of alternatives with "|" between them, tried in order. An alternative is a row of these parts:
// - c: the character itself. After a backslash any character but d D w W s S stands for itself, so "\n" is an n.
// - . stands for any character, line breaks too.
// - \d \w \s: a digit, a letter or digit or "_", a space; of ASCII only. \D \W \S: anything else.
// - [a-f_\d]: one of these characters; [^...]: any other one. "-" is a member only at either end or escaped.
// - ^ $: the start of the text, as first part, and its end, as last part. Anywhere else they match nothing.
// Each part may be followed by one of these:
// - * and +: any number of times, and at least once; as often as possible.
// - ?: once or not at all; not at all if possible.
// - {m} {m,} {m,n}: so many times; as few as possible. Numbers are taken modulo 65536, and "{m,}" ends at 65535.
// Without a part before it such a sign matches nothing. There are no groups.
#pragma once

#include <cstdint>

namespace corvina {

inline constexpr std::uint32_t RegexOccurs = 0;
// Also when an argument is null, or when the text is not UTF-8 at a place that the search has come to.
inline constexpr std::uint32_t RegexDoesNotOccur = 1;
// The pattern is not UTF-8 or no expression, or there is too much of it:
// - more than 29 parts and signs, "|" included;
// - classes that have more than 39 bytes between their brackets ("[^" being a bracket), counting one more for each.
inline constexpr std::uint32_t RegexMalformed = 2;

// Returns one of the three. Both texts are UTF-8 and end with a zero byte. Allocates nothing and keeps nothing: any
// number of calls may run at a time.
std::uint32_t tsm_regex_match(const char* pattern, const char* text);

}  // namespace corvina
