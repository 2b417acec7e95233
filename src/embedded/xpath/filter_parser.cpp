#include "embedded/xpath/filter_parser.h"

#include <algorithm>
#include <utility>

#include "base/utf.h"
#include "embedded/xpath/filter_scanner.h"

namespace corvina::xpath {
namespace {

// Names of functions count in any case: the platform's own documents write both "band" and "Band".
bool IsFunction(std::wstring_view name, std::wstring_view lowerCase) {
    return std::equal(name.begin(), name.end(), lowerCase.begin(), lowerCase.end(), [](wchar_t left, wchar_t right) {
        return (left >= L'A' && left <= L'Z' ? left + (L'a' - L'A') : left) == right;
    });
}

class Parser {
  public:
    Parser(std::wstring_view text, std::uint64_t now) : scanner_(text), now_(now) {}

    std::optional<Expression> ParseAll() {
        Expression whole;
        if (!ParseOr(whole) || !scanner_.AtEnd()) {
            return std::nullopt;
        }
        return whole;
    }

  private:
    // All parsing functions are false when the text is not what they read; then all is.

    bool ParseOr(Expression& result) { return ParseJoined(Expression::Kind::Or, L"or", result); }

    bool ParseAnd(Expression& result) { return ParseJoined(Expression::Kind::And, L"and", result); }

    // One part, or several with the word between them.
    bool ParseJoined(Expression::Kind kind, std::wstring_view word, Expression& result) {
        const auto parsePart = [this, kind](Expression& part) {
            return kind == Expression::Kind::Or ? ParseAnd(part) : ParsePart(part);
        };
        if (!parsePart(result)) {
            return false;
        }
        if (!scanner_.TakeWord(word)) {
            return true;
        }
        Expression joined;
        joined.Is = kind;
        joined.Parts.push_back(std::move(result));
        do {
            if (!CountExpression() || !parsePart(joined.Parts.emplace_back())) {
                return false;
            }
        } while (scanner_.TakeWord(word));
        result = std::move(joined);
        return true;
    }

    bool ParsePart(Expression& result) {
        if (scanner_.Take(L"(")) {
            return Enter() && ParseOr(result) && Leave(L")");
        }
        return CountExpression() && ParseTerm(result) && (predicates_ > 0 || result.Is == Expression::Kind::Exists);
    }

    // A comparison, a path, or band as a condition.
    bool ParseTerm(Expression& result) {
        if (ParseConstant(result.With)) {
            const auto comparison = TakeComparison();
            result.Is = Expression::Kind::Compare;
            result.How = Mirrored(comparison.value_or(Comparison::Equal));
            return comparison && ParseOperand(result.What);
        }
        if (!ParseOperand(result.What)) {
            return false;
        }
        if (const auto comparison = TakeComparison()) {
            result.Is = Expression::Kind::Compare;
            result.How = *comparison;
            return ParseConstant(result.With);
        }
        result.Is = std::holds_alternative<Path>(result.What) ? Expression::Kind::Exists : Expression::Kind::NonZero;
        return result.Is == Expression::Kind::Exists || std::holds_alternative<BandCall>(result.What);
    }

    std::optional<Comparison> TakeComparison() {
        constexpr std::pair<std::wstring_view, Comparison> Signs[] = {
            {L"<=", Comparison::LessOrEqual}, {L">=", Comparison::GreaterOrEqual}, {L"!=", Comparison::NotEqual},
            {L"<", Comparison::Less},         {L">", Comparison::Greater},         {L"=", Comparison::Equal}};
        for (const auto& [sign, comparison] : Signs) {
            if (scanner_.Take(sign)) {
                return comparison;
            }
        }
        return std::nullopt;
    }

    bool ParseConstant(Literal& literal) {
        if (const auto number = scanner_.TakeNumber()) {
            literal = Literal::OfNumber(*number);
            return true;
        }
        if (auto text = scanner_.TakeText()) {
            literal = Literal::OfText(std::move(*text));
            return true;
        }
        return false;
    }

    bool ParseOperand(Operand& operand) {
        FilterScanner ahead = scanner_;
        const std::wstring_view name = ahead.TakeName();
        if (name.empty() || name == L"text" || !ahead.Take(L"(")) {
            return ParsePath(operand.emplace<Path>());
        }
        scanner_ = ahead;
        if (IsFunction(name, L"band")) {
            return ParseBand(operand.emplace<BandCall>());
        }
        if (IsFunction(name, L"timediff")) {
            return ParseTimeDiff(operand.emplace<TimeDiffCall>());
        }
        operand = PositionCall();
        return IsFunction(name, L"position") && scanner_.Take(L")");
    }

    bool ParseBand(BandCall& call) {
        return ParseArgument(call.Left) && scanner_.Take(L",") && ParseArgument(call.Right) && scanner_.Take(L")") &&
               HasPath(call.Left, call.Right) && IsBand(call.Left) && IsBand(call.Right);
    }

    bool ParseTimeDiff(TimeDiffCall& call) {
        if (!ParseArgument(call.From)) {
            return false;
        }
        call.To = Literal::OfNumber(Integer::Of(now_));
        if (scanner_.Take(L",") && !ParseArgument(call.To)) {
            return false;
        }
        return scanner_.Take(L")") && HasPath(call.From, call.To) && IsTime(call.From) && IsTime(call.To);
    }

    bool ParseArgument(Argument& argument) {
        Literal literal;
        if (ParseConstant(literal)) {
            argument = std::move(literal);
            return true;
        }
        return ParsePath(argument.emplace<Path>());
    }

    static bool HasPath(const Argument& left, const Argument& right) {
        return std::holds_alternative<Path>(left) || std::holds_alternative<Path>(right);
    }

    static bool IsBand(const Argument& argument) {
        const auto* const literal = std::get_if<Literal>(&argument);
        return literal == nullptr || (literal->Number && literal->Number->IsIn64Bits());
    }

    static bool IsTime(const Argument& argument) {
        const auto* const literal = std::get_if<Literal>(&argument);
        return literal == nullptr || literal->Time || (literal->Number && literal->Number->IsUnsigned64());
    }

    bool ParsePath(Path& path) {
        do {
            if (!ParseStep(path.Steps.emplace_back())) {
                return false;
            }
        } while (scanner_.Take(L"/"));
        return true;
    }

    bool ParseStep(Step& step) {
        if (!CountExpression()) {
            return false;
        }
        const bool isAttribute = scanner_.Take(L"@") || TakeAxis(L"attribute");
        if (!isAttribute) {
            TakeAxis(L"child");
        }
        if (scanner_.Take(L"*")) {
            step.Test = isAttribute ? NodeTest::AnyAttribute : NodeTest::AnyElement;
        } else {
            const std::wstring_view name = scanner_.TakeName();
            if (name.empty()) {
                return false;
            }
            AppendUtf16Bytes(name, step.Name);
            step.Test = isAttribute ? NodeTest::Attribute : NodeTest::Element;
            if (!isAttribute && name == L"text" && scanner_.Take(L"(")) {
                step.Test = NodeTest::Text;
                if (!scanner_.Take(L")")) {
                    return false;
                }
            }
        }
        return ParsePredicates(step.Predicates);
    }

    bool TakeAxis(std::wstring_view name) {
        FilterScanner ahead = scanner_;
        const bool found = ahead.TakeWord(name) && ahead.Take(L"::");
        if (found) {
            scanner_ = ahead;
        }
        return found;
    }

    bool ParsePredicates(std::vector<Expression>& predicates) {
        while (scanner_.Take(L"[")) {
            ++predicates_;
            if (!Enter() || predicates.size() == MostPredicates || !ParseOr(predicates.emplace_back()) ||
                !Leave(L"]")) {
                return false;
            }
            --predicates_;
        }
        return true;
    }

    bool Enter() { return ++depth_ <= DeepestFilter; }

    bool Leave(std::wstring_view sign) {
        --depth_;
        return scanner_.Take(sign);
    }

    bool CountExpression() { return ++expressions_ <= MostExpressions; }

    FilterScanner scanner_;
    std::uint64_t now_;
    std::size_t depth_ = 0;
    std::size_t predicates_ = 0;  // of those in depth_, how many are brackets
    std::size_t expressions_ = 0;
};

}  // namespace

std::optional<Expression> ParseFilter(std::wstring_view text, std::uint64_t now) {
    return text.size() > LongestFilter ? std::nullopt : Parser(text, now).ParseAll();
}

}  // namespace corvina::xpath
