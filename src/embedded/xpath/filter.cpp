#include "embedded/xpath/filter.h"

#include "embedded/xpath/filter_parser.h"
#include "embedded/xpath/tree_matcher.h"

namespace corvina::xpath {
namespace {

// "*": every event has a root.
bool IsEverything(const Expression& expression) {
    if (expression.Is != Expression::Kind::Exists) {
        return false;
    }
    const Path& path = std::get<Path>(expression.What);
    return path.Steps.size() == 1 && path.Steps[0].Test == NodeTest::AnyElement && path.Steps[0].Predicates.empty();
}

}  // namespace

Filter::Filter(Expression expression)
    : expression_(std::move(expression)), system_(expression_), matchesEverything_(IsEverything(expression_)) {}

std::unique_ptr<const Filter> Filter::Parse(std::wstring_view text, std::uint64_t now) {
    const bool isEmpty = text.find_first_not_of(L" \t\r\n") == std::wstring_view::npos;
    std::optional<Expression> expression = ParseFilter(isEmpty ? L"*" : text, now);
    return expression ? std::unique_ptr<const Filter>(new Filter(std::move(*expression))) : nullptr;
}

bool Filter::Matches(EventValues& event) const {
    const Answer answer = matchesEverything_ ? Answer::Yes : system_.Ask(event);
    if (answer != Answer::Open) {
        return answer == Answer::Yes;
    }
    const evtx::EventTree* const tree = event.Tree();
    return tree != nullptr && MatchesTree(*tree);
}

bool Filter::MatchesTree(const evtx::EventTree& tree) const {
    return xpath::MatchesTree(expression_, tree);
}

}  // namespace corvina::xpath
