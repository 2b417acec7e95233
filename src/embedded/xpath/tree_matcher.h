// Asks the tree of one event what a filter says.
#pragma once

#include "embedded/evtx/event_tree.h"
#include "embedded/xpath/expression.h"

namespace corvina::xpath {

// Whether the expression holds in the place around the event's root. An event so large, or made so oddly, that the
// answer would take millions of steps is not matched.
bool MatchesTree(const Expression& expression, const evtx::EventTree& tree);

}  // namespace corvina::xpath
