#include "i18n/language.h"

#include <cstddef>

#include "i18n/language_tables.h"

namespace corvina::i18n {

namespace {

bool Holds(std::span<const std::wstring_view> table, int slot) {
    return slot >= 0 && static_cast<std::size_t>(slot) < table.size();
}

}  // namespace

std::wstring_view Language::Text(int slot) const {
    std::span<const std::wstring_view> table = LanguageTable(index_);
    if (!Holds(table, slot)) {
        table = LanguageTable(English);
    }
    return Holds(table, slot) ? table[static_cast<std::size_t>(slot)] : std::wstring_view(L"");
}

}  // namespace corvina::i18n
