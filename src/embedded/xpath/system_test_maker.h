// Finds out what a filter says about System values alone.
#pragma once

#include "embedded/xpath/system_filter.h"

namespace corvina::xpath {

// Open where the expression is about anything else. Conditions on the numbers of one field become one set, and cheap
// parts come first.
SystemTest MakeSystemTest(const Expression& expression);

}  // namespace corvina::xpath
