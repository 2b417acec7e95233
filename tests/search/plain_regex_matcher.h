// Searches with a compiled regular expression in the plainest way, by trying everything, as a measure for the matcher.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "search/regex_character.h"
#include "search/regex_matcher.h"
#include "search/regex_pattern.h"
#include "search/utf8_sequence.h"

namespace corvina::test {

class PlainRegexMatcher {
  public:
    // Gives up after so many steps.
    PlainRegexMatcher(const RegexPattern& pattern, std::string_view text, std::size_t steps)
        : pattern_(pattern), text_(text), steps_(steps) {}

    std::optional<RegexOccurrence> Search() {
        for (std::size_t alternative = 0;; ++alternative) {
            const bool isAtStart = KindAt(alternative) == Kind::Begin;
            for (std::size_t start = 0;; start += LengthAt(start)) {
                if (!IsReadable(start)) {
                    return std::nullopt;
                }
                std::size_t end = 0;
                if (Match(alternative + (isAtStart ? 1 : 0), start, end)) {
                    return RegexOccurrence{start, end - start};
                }
                if (start == text_.size() || isAtStart) {
                    break;
                }
            }
            while (!IsEnd(alternative)) {
                ++alternative;
            }
            if (KindAt(alternative) == Kind::Terminator) {
                return std::nullopt;
            }
        }
    }

    bool HasGivenUp() const { return steps_ == 0; }

  private:
    using Kind = RegexToken::Kinds;

    Kind KindAt(std::size_t index) const { return pattern_.Token(index).Kind; }
    bool IsEnd(std::size_t index) const { return KindAt(index) == Kind::Terminator || KindAt(index) == Kind::Branch; }
    std::size_t LengthAt(std::size_t position) const { return FirstCharacter(text_.substr(position)).size(); }
    bool IsReadable(std::size_t position) const { return position == text_.size() || LengthAt(position) > 0; }

    bool IsCharacterStart(std::size_t position) const {
        return position == text_.size() || (static_cast<unsigned char>(text_[position]) & 0xC0) != 0x80;
    }

    bool Match(std::size_t index, std::size_t position, std::size_t& end) {
        if (steps_ == 0 || --steps_ == 0 || !IsReadable(position)) {
            return false;
        }
        if (IsEnd(index)) {
            end = position;
            return true;
        }
        const Kind kind = KindAt(index);
        const Kind next = KindAt(index + 1);
        if (next == Kind::QuestionMark) {
            return Match(index + 2, position, end) || MatchOne(index, index + 2, position, end);
        }
        if (kind == Kind::Quantifier) {
            return false;
        }
        if (next == Kind::Star || next == Kind::Plus) {
            return MatchMany(index, position, end) || (next == Kind::Star && Match(index + 2, position, end));
        }
        if (kind == Kind::End) {
            end = position;
            return IsEnd(index + 1) && position == text_.size();
        }
        if (next == Kind::Quantifier) {
            return MatchCounted(index, position, end);
        }
        return MatchOne(index, index + 1, position, end);
    }

    bool IsCharacterOf(std::size_t index, std::size_t position) const {
        return position < text_.size() &&
               MatchesCharacter(pattern_, pattern_.Token(index), text_.substr(position, LengthAt(position)));
    }

    bool MatchOne(std::size_t index, std::size_t rest, std::size_t position, std::size_t& end) {
        return IsCharacterOf(index, position) && Match(rest, position + LengthAt(position), end);
    }

    bool MatchMany(std::size_t index, std::size_t first, std::size_t& end) {
        std::size_t position = first;
        while (IsReadable(position) && IsCharacterOf(index, position)) {
            position += LengthAt(position);
        }
        if (!IsReadable(position)) {
            return false;
        }
        for (; position > first; --position) {
            if (IsCharacterStart(position) && Match(index + 2, position, end)) {
                return true;
            }
        }
        return false;
    }

    bool MatchCounted(std::size_t index, std::size_t position, std::size_t& end) {
        const RegexToken& quantifier = pattern_.Token(index + 1);
        for (std::size_t count = 0; count <= quantifier.Maximum && IsReadable(position); ++count) {
            if (count >= quantifier.Minimum && Match(index + 2, position, end)) {
                return true;
            }
            if (!IsCharacterOf(index, position)) {
                return false;
            }
            position += LengthAt(position);
        }
        return false;
    }

    const RegexPattern& pattern_;
    std::string_view text_;
    std::size_t steps_;
};

}  // namespace corvina::test
