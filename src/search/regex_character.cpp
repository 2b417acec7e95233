#include "search/regex_character.h"

#include "search/utf8_sequence.h"

namespace corvina {
namespace {

using Kind = RegexToken::Kinds;

bool IsDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool IsAlpha(char byte) {
    return byte == '_' || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || IsDigit(byte);
}

bool IsWhitespace(char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

// Shorter characters come first. That is the order of code points.
bool IsNotAfter(std::string_view left, std::string_view right) {
    return left.size() < right.size() || (left.size() == right.size() && left.compare(right) <= 0);
}

// Whether a range such as "a-f" stands at the front of `members` and holds the character. The walk over the members
// goes on with the "-", not behind the range, so "a-c-e" is two ranges.
bool IsInRange(std::string_view members, std::string_view first, std::string_view character) {
    const std::string_view behind = members.substr(first.size());
    if (first == "-" || !behind.starts_with('-') || character == "-") {
        return false;
    }
    const std::string_view last = FirstCharacter(behind.substr(1));
    return !last.empty() && IsNotAfter(first, character) && IsNotAfter(character, last);
}

bool MatchesEscaped(std::string_view escaped, std::string_view character) {
    const char byte = character.front();
    switch (escaped.front()) {
        case 'd':
            return IsDigit(byte);
        case 'D':
            return !IsDigit(byte);
        case 'w':
            return IsAlpha(byte);
        case 'W':
            return !IsAlpha(byte);
        case 's':
            return IsWhitespace(byte);
        case 'S':
            return !IsWhitespace(byte);
        default:
            return escaped == character;
    }
}

// Members that are not UTF-8 end the class.
bool IsMember(std::string_view members, std::string_view character) {
    std::string_view rest = members;
    for (std::string_view member = FirstCharacter(rest); !member.empty(); member = FirstCharacter(rest)) {
        if (IsInRange(rest, member, character)) {
            return true;
        }
        const bool isFirst = rest.size() == members.size();
        rest.remove_prefix(member.size());
        if (member == "\\") {
            const std::string_view escaped = FirstCharacter(rest);
            if (escaped.empty()) {
                return false;
            }
            if (MatchesEscaped(escaped, character)) {
                return true;
            }
            rest.remove_prefix(escaped.size());
        } else if (member == character && (member != "-" || isFirst || rest.empty())) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool MatchesCharacter(const RegexPattern& pattern, const RegexToken& token, std::string_view character) {
    const char byte = character.front();
    switch (token.Kind) {
        case Kind::Dot:
            return true;
        case Kind::Char:
            return character == token.Character();
        case Kind::CharClass:
            return IsMember(pattern.ClassMembers(token), character);
        case Kind::InvCharClass:
            return !IsMember(pattern.ClassMembers(token), character);
        case Kind::Digit:
            return IsDigit(byte);
        case Kind::NotDigit:
            return !IsDigit(byte);
        case Kind::Alpha:
            return IsAlpha(byte);
        case Kind::NotAlpha:
            return !IsAlpha(byte);
        case Kind::Whitespace:
            return IsWhitespace(byte);
        case Kind::NotWhitespace:
            return !IsWhitespace(byte);
        default:
            return false;
    }
}

}  // namespace corvina
