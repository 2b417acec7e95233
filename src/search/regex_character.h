// Whether one token of a regular expression matches one character.
#pragma once

#include <string_view>

#include "search/regex_pattern.h"

namespace corvina {

// `character`: one UTF-8 character, not empty. Tokens that stand for no character match none.
bool MatchesCharacter(const RegexPattern& pattern, const RegexToken& token, std::string_view character);

}  // namespace corvina
