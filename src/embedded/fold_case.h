// Comparing names without regard to case, the same on every system and in every locale.
#pragma once

#include <string>
#include <string_view>

namespace corvina::embedded {

// Lower case for ASCII, Latin-1, Greek and Cyrillic letters; every other character stays as it is.
std::wstring FoldCase(std::wstring_view text);

bool EqualWithoutCase(std::wstring_view left, std::wstring_view right);

}  // namespace corvina::embedded
