// A regular expression compiled into tokens, which lie in an object of fixed size.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace corvina {

struct RegexToken {
    enum class Kinds : std::uint8_t {
        Terminator,  // ends the pattern
        Dot,
        Begin,
        End,
        QuestionMark,
        Star,
        Plus,
        Char,
        CharClass,
        InvCharClass,
        Digit,
        NotDigit,
        Alpha,
        NotAlpha,
        Whitespace,
        NotWhitespace,
        Branch,
        Quantifier,
    };

    Kinds Kind = Kinds::Terminator;

    // Of Char: the bytes of the character.
    std::uint8_t ByteCount = 0;
    std::array<char, 4> Bytes{};
    std::string_view Character() const { return {Bytes.data(), ByteCount}; }

    // Of CharClass and InvCharClass: where its members stand in the class buffer.
    std::uint8_t ClassStart = 0;
    std::uint8_t ClassLength = 0;

    // Of Quantifier.
    std::uint16_t Minimum = 0;
    std::uint16_t Maximum = 0;
};

class RegexPattern {
  public:
    static constexpr std::size_t TokenCapacity = 30;  // with the terminator
    static constexpr std::size_t ClassCapacity = 40;

    // Compiles a pattern in place of the one before, whatever becomes of it. False when it is malformed; the object
    // then holds the empty pattern. What the signs mean stands in tsm_regex_match.h.
    bool Compile(std::string_view pattern);

    // The token at `index`, which must not lie behind the terminator.
    const RegexToken& Token(std::size_t index) const { return tokens_[index]; }

    // The members of a class as written, with their backslashes.
    std::string_view ClassMembers(const RegexToken& token) const {
        return {classBuffer_.data() + token.ClassStart, token.ClassLength};
    }

  private:
    bool CompileToken(std::string_view& rest, RegexToken& token);
    bool CompileClass(std::string_view& rest, RegexToken& token);
    bool AppendToClasses(char byte);

    std::array<RegexToken, TokenCapacity> tokens_{};
    // The members of all classes, with a zero byte before the first and one after each.
    std::array<char, ClassCapacity> classBuffer_{};
    std::size_t classesEnd_ = 1;
};

}  // namespace corvina
