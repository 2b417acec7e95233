#include "search/tsm_regex_match.h"

#include "search/regex_matcher.h"
#include "search/regex_pattern.h"

namespace corvina {

std::uint32_t tsm_regex_match(const char* pattern, const char* text) {
    if (pattern == nullptr || text == nullptr) {
        return RegexDoesNotOccur;
    }
    RegexPattern compiled;
    if (!compiled.Compile(pattern)) {
        return RegexMalformed;
    }
    return RegexMatcher(compiled, text).Search() ? RegexOccurs : RegexDoesNotOccur;
}

}  // namespace corvina
