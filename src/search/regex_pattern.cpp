#include "search/regex_pattern.h"

#include <algorithm>
#include <limits>

#include "search/utf8_sequence.h"

namespace corvina {
namespace {

using Kind = RegexToken::Kinds;

// What follows has been read when these return; `rest` is what is still to be read.

void SetCharacter(std::string_view character, RegexToken& token) {
    token.Kind = Kind::Char;
    token.ByteCount = static_cast<std::uint8_t>(character.size());
    std::copy(character.begin(), character.end(), token.Bytes.begin());
}

std::string_view TakeCharacter(std::string_view& rest) {
    const std::string_view character = FirstCharacter(rest);
    rest.remove_prefix(character.size());
    return character;
}

// Of signs that are a token by themselves; Char of all others.
Kind KindOfSign(char sign) {
    switch (sign) {
        case '^':
            return Kind::Begin;
        case '$':
            return Kind::End;
        case '.':
            return Kind::Dot;
        case '?':
            return Kind::QuestionMark;
        case '*':
            return Kind::Star;
        case '+':
            return Kind::Plus;
        case '|':
            return Kind::Branch;
        default:
            return Kind::Char;
    }
}

// Of letters after a backslash; Char of everything else.
Kind KindOfEscape(char letter) {
    switch (letter) {
        case 'd':
            return Kind::Digit;
        case 'D':
            return Kind::NotDigit;
        case 'w':
            return Kind::Alpha;
        case 'W':
            return Kind::NotAlpha;
        case 's':
            return Kind::Whitespace;
        case 'S':
            return Kind::NotWhitespace;
        default:
            return Kind::Char;
    }
}

bool CompileEscape(std::string_view& rest, RegexToken& token) {
    const std::string_view character = TakeCharacter(rest);
    if (character.empty()) {
        return false;
    }
    token.Kind = KindOfEscape(character.front());
    if (token.Kind == Kind::Char) {
        SetCharacter(character, token);
    }
    return true;
}

// Takes the digits at the front; false when there are none. Larger numbers are taken modulo 65536.
bool TakeNumber(std::string_view& rest, std::uint16_t& number) {
    const std::size_t digits = std::min(rest.find_first_not_of("0123456789"), rest.size());
    number = 0;
    for (const char digit : rest.substr(0, digits)) {
        number = static_cast<std::uint16_t>(number * 10 + (digit - '0'));
    }
    rest.remove_prefix(digits);
    return digits > 0;
}

bool TakeSign(std::string_view& rest, char sign) {
    const bool isThere = rest.starts_with(sign);
    rest.remove_prefix(isThere ? 1 : 0);
    return isThere;
}

// What stands behind an opening brace: "m}", "m,}" or "m,n}".
bool CompileQuantifier(std::string_view& rest, RegexToken& token) {
    token.Kind = Kind::Quantifier;
    if (!TakeNumber(rest, token.Minimum)) {
        return false;
    }
    token.Maximum = token.Minimum;
    if (TakeSign(rest, ',') && !TakeNumber(rest, token.Maximum)) {
        token.Maximum = std::numeric_limits<std::uint16_t>::max();
    }
    return TakeSign(rest, '}') && token.Minimum <= token.Maximum;
}

}  // namespace

bool RegexPattern::Compile(std::string_view pattern) {
    classesEnd_ = 1;
    std::size_t count = 0;
    while (!pattern.empty()) {
        if (count + 1 == TokenCapacity || !CompileToken(pattern, tokens_[count])) {
            tokens_[0] = RegexToken();
            return false;
        }
        ++count;
    }
    tokens_[count] = RegexToken();
    return true;
}

// Compiles the token at the front of `rest` and takes its text away.
bool RegexPattern::CompileToken(std::string_view& rest, RegexToken& token) {
    token = RegexToken();
    const std::string_view character = TakeCharacter(rest);
    if (character.empty()) {
        return false;
    }
    switch (character.front()) {
        case '\\':
            return CompileEscape(rest, token);
        case '[':
            return CompileClass(rest, token);
        case '{':
            return CompileQuantifier(rest, token);
        default:
            token.Kind = KindOfSign(character.front());
            if (token.Kind == Kind::Char) {
                SetCharacter(character, token);
            }
            return true;
    }
}

// What stands behind an opening bracket, up to the closing one. Members are only copied here; the matcher reads them.
bool RegexPattern::CompileClass(std::string_view& rest, RegexToken& token) {
    token.Kind = TakeSign(rest, '^') ? Kind::InvCharClass : Kind::CharClass;
    const std::size_t start = classesEnd_;
    while (!TakeSign(rest, ']')) {
        const std::size_t length = rest.starts_with('\\') ? 2 : 1;
        if (rest.size() < length || !std::all_of(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(length),
                                                 [this](char byte) { return AppendToClasses(byte); })) {
            return false;
        }
        rest.remove_prefix(length);
    }
    token.ClassStart = static_cast<std::uint8_t>(start);
    token.ClassLength = static_cast<std::uint8_t>(classesEnd_ - start);
    return token.ClassLength > 0 && AppendToClasses('\0');
}

bool RegexPattern::AppendToClasses(char byte) {
    if (classesEnd_ == ClassCapacity) {
        return false;
    }
    classBuffer_[classesEnd_++] = byte;
    return true;
}

}  // namespace corvina
