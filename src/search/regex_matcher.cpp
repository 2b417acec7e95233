#include "search/regex_matcher.h"

#include <algorithm>

#include "base/ascii.h"
#include "search/regex_character.h"
#include "search/utf8_sequence.h"

namespace corvina {

using Kind = RegexToken::Kinds;

namespace {

// The sign behind a token says how often it may match; what follows both is the rest.
constexpr std::size_t RestAfter(std::size_t index) {
    return index + 2;
}

}  // namespace

RegexMatcher::RegexMatcher(const RegexPattern& pattern, std::string_view text)
    : pattern_(pattern), text_(ValidPart(text)), isWhole_(text_.size() == text.size()), isAscii_(IsAscii(text_)) {
    runs_.fill({std::string_view::npos, std::string_view::npos});
}

std::optional<RegexOccurrence> RegexMatcher::Search() {
    if (!IsReadable(0)) {
        return std::nullopt;
    }
    std::size_t alternative = 0;
    for (;;) {
        const bool isAtStart = pattern_.Token(alternative).Kind == Kind::Begin;
        if (isAtStart ? Attempt(alternative + 1, 0) : SearchAlternative(alternative)) {
            return occurrence_;
        }
        if (!isAtStart && !isWhole_) {
            return std::nullopt;
        }
        while (!IsAlternativeEnd(alternative)) {
            ++alternative;
        }
        if (pattern_.Token(alternative).Kind == Kind::Terminator) {
            return std::nullopt;
        }
        ++alternative;
    }
}

// Tries the alternative at every place of the text, its end included.
bool RegexMatcher::SearchAlternative(std::size_t index) {
    const RegexToken& first = pattern_.Token(index);
    const bool startsWithCharacter = first.Kind == Kind::Char && !IsRepeated(index);
    for (std::size_t start = 0; IsReadable(start); start = After(start)) {
        if (startsWithCharacter) {
            start = text_.find(first.Character(), start);
        }
        if (start == std::string_view::npos) {
            return false;
        }
        if (Attempt(index, start)) {
            return true;
        }
        if (start == text_.size()) {
            return false;
        }
    }
    return false;
}

bool RegexMatcher::Attempt(std::size_t index, std::size_t start) {
    occurrence_.Start = start;
    return MatchRow(index, start);
}

// Whether the tokens from `index` up to the end of the alternative match at the position. The order of the questions
// counts: it decides on odd patterns such as "$*" and "{2}?".
bool RegexMatcher::MatchRow(std::size_t index, std::size_t position) {
    for (; !IsAlternativeEnd(index); ++index) {
        const Kind kind = pattern_.Token(index).Kind;
        const Kind next = pattern_.Token(index + 1).Kind;
        if (next == Kind::QuestionMark) {
            return MatchOptional(index, position);
        }
        if (kind == Kind::Quantifier) {
            return false;
        }
        if (next == Kind::Star) {
            return MatchAtLeastOnce(index, position) || MatchRest(RestAfter(index), position);
        }
        if (next == Kind::Plus) {
            return MatchAtLeastOnce(index, position);
        }
        if (kind == Kind::End) {
            if (!IsAlternativeEnd(index + 1) || position != text_.size()) {
                return false;
            }
            break;
        }
        if (next == Kind::Quantifier) {
            return MatchCounted(index, position);
        }
        if (!MatchesCharacterAt(index, position)) {
            return false;
        }
        position = After(position);
        if (!IsReadable(position)) {
            return false;
        }
    }
    occurrence_.Length = position - occurrence_.Start;
    return true;
}

bool RegexMatcher::MatchOptional(std::size_t index, std::size_t position) {
    return MatchRest(RestAfter(index), position) ||
           (MatchesCharacterAt(index, position) && MatchRest(RestAfter(index), After(position)));
}

bool RegexMatcher::MatchAtLeastOnce(std::size_t index, std::size_t first) {
    std::size_t position = RunEnd(index, first);
    if (!IsReadable(position)) {
        return false;
    }
    const std::size_t rest = RestAfter(index);
    while (position > first) {
        if (MatchRest(rest, position)) {
            return true;
        }
        // Steps over the whole stretch at which the rest is known to fail.
        const std::size_t failed = failures_[rest].Around(position).First;
        if (failed <= first) {
            return false;
        }
        position = Before(failed);
    }
    return false;
}

bool RegexMatcher::MatchCounted(std::size_t index, std::size_t position) {
    const RegexToken& quantifier = pattern_.Token(index + 1);
    const std::size_t rest = RestAfter(index);
    std::size_t end = RunEnd(index, position);
    // There are at least as many bytes as characters.
    if (end - position < quantifier.Minimum) {
        return false;
    }
    std::size_t count = 0;
    if (isAscii_) {
        end = std::min(end, position + quantifier.Maximum);
        count = quantifier.Minimum;
        position += quantifier.Minimum;
    }
    const bool reachesEnd = end - position <= quantifier.Maximum;
    for (; position <= end && count <= quantifier.Maximum; ++count) {
        const bool isEnough = count >= quantifier.Minimum;
        if (isEnough && MatchRest(rest, position)) {
            return true;
        }
        if (position == end) {
            return false;
        }
        // Where counting is not needed, steps over the whole stretch at which the rest is known to fail.
        position = isEnough && reachesEnd ? failures_[rest].Around(position).End : After(position);
    }
    return false;
}

// As MatchRow, for positions that may come again.
bool RegexMatcher::MatchRest(std::size_t index, std::size_t position) {
    if (failures_[index].Contains(position)) {
        return false;
    }
    if (IsReadable(position) && MatchRow(index, position)) {
        return true;
    }
    failures_[index].Add({position, After(position)});
    return false;
}

// The position behind the characters from `position` on that the token matches.
std::size_t RegexMatcher::RunEnd(std::size_t index, std::size_t position) {
    TextStretch& run = runs_[index];
    if (run.First <= position && position <= run.End) {
        return run.End;
    }
    const std::size_t first = position;
    while (position != run.First && MatchesCharacterAt(index, position)) {
        position = After(position);
    }
    run = {first, position == run.First ? run.End : position};
    return run.End;
}

bool RegexMatcher::IsAlternativeEnd(std::size_t index) const {
    const Kind kind = pattern_.Token(index).Kind;
    return kind == Kind::Terminator || kind == Kind::Branch;
}

// Whether the token may match another number of times than once.
bool RegexMatcher::IsRepeated(std::size_t index) const {
    const Kind next = pattern_.Token(index + 1).Kind;
    return next == Kind::QuestionMark || next == Kind::Star || next == Kind::Plus || next == Kind::Quantifier;
}

// Whether there is a character at the position, and the token matches it.
bool RegexMatcher::MatchesCharacterAt(std::size_t index, std::size_t position) const {
    return position < text_.size() &&
           MatchesCharacter(pattern_, pattern_.Token(index), text_.substr(position, Utf8Length(text_[position])));
}

// The position behind the character at `position`, or behind the end of the text.
std::size_t RegexMatcher::After(std::size_t position) const {
    return position + (position < text_.size() ? Utf8Length(text_[position]) : 1);
}

// The position of the character before `position`, which must not be the start.
std::size_t RegexMatcher::Before(std::size_t position) const {
    do {
        --position;
    } while (Utf8Length(text_[position]) == 0);
    return position;
}

// Whether there is a character at the position, or the end of the text, and not something that is not UTF-8.
bool RegexMatcher::IsReadable(std::size_t position) const {
    return position < text_.size() || isWhole_;
}

}  // namespace corvina
