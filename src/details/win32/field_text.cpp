#include "details/win32/field_text.h"

#include <algorithm>

namespace corvina {

std::wstring FieldText(std::wstring_view text) {
    const bool isCut = text.size() > LongestFieldText;
    text = text.substr(0, LongestFieldText);
    std::wstring result;
    result.reserve(text.size() + static_cast<std::size_t>(std::ranges::count(text, L'\n')) + 8);
    for (std::size_t i = 0; i < text.size(); ++i) {
        switch (text[i]) {
            case L'\r':
                if (i + 1 < text.size() && text[i + 1] == L'\n') {
                    ++i;
                }
                [[fallthrough]];
            case L'\n':
                result += L"\r\n";
                break;
            case L'\0':
                result += L' ';
                break;
            default:
                result += text[i];
                break;
        }
    }
    if (isCut) {
        result += L"\r\n...";
    }
    return result;
}

}  // namespace corvina
