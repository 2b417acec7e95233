// The text test that search, text conditions and the recognition of the security log share.
#pragma once

#include <string>
#include <string_view>

namespace corvina {

// The options that the user last searched with. They outlive the search dialog.
struct TextMatchOptions {
    bool MatchCase = false;

    friend bool operator==(const TextMatchOptions&, const TextMatchOptions&) = default;
};

class TextMatcher {
  public:
    const TextMatchOptions& Options() const { return options_; }
    void SetOptions(const TextMatchOptions& options) { options_ = options; }

    // Whether `search` occurs in `candidate`; an empty search text occurs everywhere.
    bool Matches(std::wstring_view candidate, std::wstring_view search) const;

  private:
    TextMatchOptions options_;
};

// Upper case by the simple one-to-one mapping of the Latin, Greek, Cyrillic and Armenian alphabets, the same on every
// system and in every locale.
wchar_t UpperCase(wchar_t character);
std::wstring UpperCase(std::wstring_view text);

bool ContainsIgnoringCase(std::wstring_view text, std::wstring_view part);

}  // namespace corvina
