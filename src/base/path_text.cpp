#include "base/path_text.h"

#include <algorithm>
#include <type_traits>

#include "base/utf.h"

namespace corvina {

std::wstring TextOfPath(const std::filesystem::path& path) {
    if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>) {
        return std::wstring(path.native().begin(), path.native().end());
    } else {
        return WideFromUtf8(std::string(path.native().begin(), path.native().end()));
    }
}

std::filesystem::path PathFromText(std::wstring_view text) {
    if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>) {
        return std::filesystem::path(text).make_preferred();
    } else {
        std::string name = Utf8FromWide(text);
        std::replace(name.begin(), name.end(), '\\', '/');
        return std::filesystem::path(name);
    }
}

}  // namespace corvina
