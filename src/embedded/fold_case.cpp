#include "embedded/fold_case.h"

#include <algorithm>

namespace corvina::embedded {
namespace {

wchar_t FoldCharacter(wchar_t character) {
    const auto within = [character](wchar_t first, wchar_t last) { return character >= first && character <= last; };
    const bool latin = within(L'A', L'Z') || (within(0xC0, 0xDE) && character != 0xD7);
    const bool greek = within(0x391, 0x3A9) && character != 0x3A2;
    const bool cyrillic = within(0x410, 0x42F);
    if (latin || greek || cyrillic) {
        return static_cast<wchar_t>(character + 0x20);
    }
    return within(0x400, 0x40F) ? static_cast<wchar_t>(character + 0x50) : character;
}

}  // namespace

std::wstring FoldCase(std::wstring_view text) {
    std::wstring folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), FoldCharacter);
    return folded;
}

bool EqualWithoutCase(std::wstring_view left, std::wstring_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](wchar_t one, wchar_t other) { return FoldCharacter(one) == FoldCharacter(other); });
}

}  // namespace corvina::embedded
