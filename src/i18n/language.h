// The interface texts: one table a language, all compiled in, and the choice of the language.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/settings_store.h"

namespace corvina::i18n {

inline constexpr int German = 0;
inline constexpr int English = 1;
inline constexpr int LanguageCount = 24;
inline constexpr int SlotCount = 254;

// The language that the program speaks, set once at start and handed by reference to whoever shows a text.
class Language {
  public:
    explicit Language(int index = English) : index_(index) {}
    int Index() const { return index_; }
    void SetIndex(int index) { index_ = index; }

    // The text of a slot, ending with a zero character behind its end. A language without a table of its own, a slot
    // beyond the table and an index out of range give the English text; a slot beyond the English table gives the empty
    // text.
    std::wstring_view Text(int slot) const;

    // Whether it is written from right to left, so that its windows are laid out that way, too.
    bool ReadsRightToLeft() const;

    // The font faces that its script asks for, the best one first; none where the usual face has all its letters.
    std::span<const std::wstring_view> FontFaces() const;

  private:
    int index_;
};

// The index for a language identifier of the platform (LANGID); English for any that is not listed.
int LanguageIndexFromIdentifier(std::uint16_t identifier);

// Chooses the language at start: the setting "Language" in section "Options", unless the file is missing or the value
// is exactly "-1"; then the user's interface language (1024 when the system cannot tell). Numbers are read like any
// other setting (leading digits, 0 when none) and are not changed here.
int ChooseLanguage(const SettingsStore& settings, std::optional<std::uint16_t> userInterfaceLanguage);

}  // namespace corvina::i18n
