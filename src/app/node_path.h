// The names by which settings and scripts call the tree's nodes: English, whatever language the tree is shown in.
#pragma once

#include <string>
#include <string_view>

#include "i18n/language.h"

namespace corvina {

// A path such as "Windows Logs/System" with the names of the program's own folders put into `language`. Names that come
// from the logs stay as they are; so does a path that is in `language` already.
std::wstring NodePathInLanguage(std::wstring_view path, const i18n::Language& language);

}  // namespace corvina
