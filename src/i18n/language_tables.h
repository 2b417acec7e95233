// The compiled-in tables of interface texts, which the build makes from the files in tables/.
#pragma once

#include <span>
#include <string_view>

namespace corvina::i18n {

// The table of a language: a text a slot, each ending with a zero character behind its end. Empty for a language
// without a table of its own and for an index out of range.
std::span<const std::wstring_view> LanguageTable(int index);

}  // namespace corvina::i18n
