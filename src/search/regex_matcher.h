// Looks for a compiled regular expression in a text, by trying and stepping back.
//
// Plain stepping back takes a time like the length of the text to the power of the number of stars. Two notes for each
// token prevent that, and change no result: whether the rest of a pattern matches at a place depends on nothing but the
// place, so it is not tried again where it is known to have failed; and the end of a run of characters that one token
// matches is the same from everywhere in the run. The notes have a fixed size, so a few things may still be tried
// again; but for "a*a*a*a*a*b" over nothing but a's, and for all patterns that were tried, the time grows like the
// length of the text. Only in texts beyond ASCII, where characters must be counted, "{m,n}" takes m steps at each
// place, and n steps in runs that are longer than n.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "search/regex_pattern.h"
#include "search/text_stretches.h"

namespace corvina {

// In bytes.
struct RegexOccurrence {
    std::size_t Start = 0;
    std::size_t Length = 0;
};

class RegexMatcher {
  public:
    // Both must outlive the matcher. The text is UTF-8 as in utf8_sequence.h.
    RegexMatcher(const RegexPattern& pattern, std::string_view text);

    // The first place at which the first alternative occurs, or else the next alternative. None as well when the search
    // comes to something that is not UTF-8.
    std::optional<RegexOccurrence> Search();

  private:
    bool IsAlternativeEnd(std::size_t index) const;
    bool IsRepeated(std::size_t index) const;
    bool MatchesCharacterAt(std::size_t index, std::size_t position) const;
    std::size_t After(std::size_t position) const;
    std::size_t Before(std::size_t position) const;
    bool IsReadable(std::size_t position) const;

    bool SearchAlternative(std::size_t index);
    bool Attempt(std::size_t index, std::size_t start);
    bool MatchRow(std::size_t index, std::size_t position);
    bool MatchOptional(std::size_t index, std::size_t position);
    bool MatchAtLeastOnce(std::size_t index, std::size_t position);
    bool MatchCounted(std::size_t index, std::size_t position);
    bool MatchRest(std::size_t index, std::size_t position);
    std::size_t RunEnd(std::size_t index, std::size_t position);

    const RegexPattern& pattern_;
    std::string_view text_;  // as far as it is UTF-8
    bool isWhole_;           // that is all of it
    bool isAscii_;           // so that bytes can be counted for characters
    RegexOccurrence occurrence_;
    // By the index of a token: where the row from this token on is known not to match; and a run of characters that the
    // token matches, up to the first one that it does not.
    std::array<TextStretches, RegexPattern::TokenCapacity> failures_{};
    std::array<TextStretch, RegexPattern::TokenCapacity> runs_{};
};

}  // namespace corvina
