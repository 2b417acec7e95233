// The text test that the search and the recognition of the security log share.
#pragma once

#include <string_view>

namespace corvina {

// The options that the user last searched with. They outlive the search dialog. Of the last three the first in the
// order regular expression, wildcard, whole string counts; MatchCase goes with each.
struct TextMatchOptions {
    bool MatchCase = false;
    bool MatchWholeString = false;
    bool UseWildcard = false;
    bool UseRegularExpression = false;

    friend bool operator==(const TextMatchOptions&, const TextMatchOptions&) = default;
};

class TextMatcher {
  public:
    const TextMatchOptions& Options() const { return options_; }
    void SetOptions(const TextMatchOptions& options) { options_ = options; }

    // Whether `candidate` passes:
    // - with a regular expression, when `search` occurs in it; nothing passes a malformed one. Both are taken as UTF-8,
    //   half surrogates as U+FFFD, up to the first zero character. Without MatchCase the letters a to z of both become
    //   upper case, those of the expression's escapes as well: "\d" then stands for what is no digit;
    // - with a wildcard, when `search` describes all of it: "*" any run of characters, "?" any one character;
    // - as a whole string, when it equals `search`;
    // - otherwise when `search` occurs in it.
    // An object has no state but the options, so a search may stop between any two candidates.
    bool Matches(std::wstring_view candidate, std::wstring_view search) const;

  private:
    TextMatchOptions options_;
};

}  // namespace corvina
