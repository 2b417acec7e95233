#include "embedded/xpath/tree_matcher.h"

#include <algorithm>
#include <array>

namespace corvina::xpath {
namespace {

constexpr std::int64_t MostSteps = std::int64_t{16} << 20;

class TreeMatcher {
  public:
    explicit TreeMatcher(const evtx::EventTree& tree) : tree_(tree), nodes_(tree.Nodes()) {}

    bool Matches(const Expression& expression) {
        const Place around{0, static_cast<std::uint32_t>(nodes_.size()), 1};
        return Holds(expression, around) && steps_ >= 0;
    }

  private:
    using Node = evtx::EventTree::Node;
    using NodeKind = evtx::EventTree::NodeKind;

    // Where a path starts: the nodes in its context, and the context's own place among those of its step.
    struct Place {
        std::uint32_t Begin = 0;
        std::uint32_t End = 0;
        std::uint32_t Position = 1;
    };

    bool Holds(const Expression& expression, const Place& place) {
        const auto holds = [&](const Expression& part) { return Holds(part, place); };
        switch (expression.Is) {
            case Expression::Kind::Or:
                return std::any_of(expression.Parts.begin(), expression.Parts.end(), holds);
            case Expression::Kind::And:
                return std::all_of(expression.Parts.begin(), expression.Parts.end(), holds);
            case Expression::Kind::Exists:
                return AnyNode(std::get<Path>(expression.What), 0, place, [](const Node&) { return true; });
            case Expression::Kind::NonZero:
                return Band(std::get<BandCall>(expression.What), place).value_or(0) != 0;
            default:
                return CompareOperand(expression, place);
        }
    }

    bool CompareOperand(const Expression& expression, const Place& place) {
        const auto compare = [&](const Scalar& scalar) { return Compare(scalar, expression.How, expression.With); };
        if (const auto* const path = std::get_if<Path>(&expression.What)) {
            return AnyNode(*path, 0, place, [&](const Node& node) { return compare(ScalarOf(tree_, node, text_)); });
        }
        if (const auto* const band = std::get_if<BandCall>(&expression.What)) {
            const std::optional<std::uint64_t> bits = Band(*band, place);
            return bits && compare(Integer::Of(*bits));
        }
        if (const auto* const timeDiff = std::get_if<TimeDiffCall>(&expression.What)) {
            const auto from = TimeOfArgument(timeDiff->From, place);
            const auto to = TimeOfArgument(timeDiff->To, place);
            return from && to && compare(MillisecondsBetween(*from, *to));
        }
        return compare(Integer::Of(place.Position));
    }

    // Whether `accept` is true for one of the nodes that the path's steps from `index` on select.
    template <typename Accept>
    bool AnyNode(const Path& path, std::size_t index, const Place& place, const Accept& accept) {
        const Step& step = path.Steps[index];
        std::array<std::uint32_t, MostPredicates> positions{};
        for (std::uint32_t at = place.Begin; at < place.End; at = nodes_[at].End) {
            if (--steps_ < 0) {
                return false;
            }
            const Node& node = nodes_[at];
            if (!PassesTest(step, node) || !PassesPredicates(step, at, positions)) {
                continue;
            }
            const bool found =
                index + 1 == path.Steps.size() ? accept(node) : AnyNode(path, index + 1, Inside(at), accept);
            if (found) {
                return true;
            }
        }
        return false;
    }

    // What is in an element: its attributes and all else.
    Place Inside(std::uint32_t node, std::uint32_t position = 1) const {
        return {node + 1, nodes_[node].End, position};
    }

    bool PassesTest(const Step& step, const Node& node) const {
        switch (step.Test) {
            case NodeTest::AnyElement:
                return node.Kind == NodeKind::Element;
            case NodeTest::Element:
                return node.Kind == NodeKind::Element && HasName(node, step.Name);
            case NodeTest::AnyAttribute:
                return node.Kind == NodeKind::Attribute;
            case NodeTest::Attribute:
                return node.Kind == NodeKind::Attribute && HasName(node, step.Name);
            default:
                return node.Kind == NodeKind::Text;
        }
    }

    bool HasName(const Node& node, const std::string& name) const {
        const auto bytes = std::as_bytes(std::span(name));
        return std::ranges::equal(node.Name, bytes);
    }

    // Each predicate counts the nodes that passed those in front of it.
    bool PassesPredicates(const Step& step, std::uint32_t node, std::array<std::uint32_t, MostPredicates>& positions) {
        for (std::size_t index = 0; index < step.Predicates.size(); ++index) {
            if (!Holds(step.Predicates[index], Inside(node, ++positions[index]))) {
                return false;
            }
        }
        return true;
    }

    std::optional<std::uint64_t> Band(const BandCall& call, const Place& place) {
        const auto left = BitsOf(ScalarOfArgument(call.Left, place));
        const auto right = BitsOf(ScalarOfArgument(call.Right, place));
        return left && right ? std::optional(*left & *right) : std::nullopt;
    }

    std::optional<std::uint64_t> TimeOfArgument(const Argument& argument, const Place& place) {
        return TimeOf(ScalarOfArgument(argument, place));
    }

    // The value of the first node that a path selects, or of a constant. Lasts until the next one.
    Scalar ScalarOfArgument(const Argument& argument, const Place& place) {
        if (const auto* const literal = std::get_if<Literal>(&argument)) {
            return literal->Time ? Scalar(FileTime{*literal->Time}) : Scalar(*literal->Number);
        }
        Scalar first;
        AnyNode(std::get<Path>(argument), 0, place, [&](const Node& node) {
            first = ScalarOf(tree_, node, text_);
            return true;
        });
        return first;
    }

    const evtx::EventTree& tree_;
    std::span<const Node> nodes_;
    std::int64_t steps_ = MostSteps;
    evtx::TextBuffer<wchar_t> text_;
};

}  // namespace

bool MatchesTree(const Expression& expression, const evtx::EventTree& tree) {
    return TreeMatcher(tree).Matches(expression);
}

}  // namespace corvina::xpath
