#include "app/win32/cell_text.h"

#include <algorithm>

namespace corvina {
namespace {

// Controls measure and draw the whole text of a cell, however little of it can be seen.
constexpr std::size_t LongestCellText = 259;

bool IsBlank(wchar_t character) {
    return character <= L' ' || character == 0x7F;
}

std::size_t WithoutHalfPair(const wchar_t* text, std::size_t length) {
    const bool endsInHalf = length > 0 && IS_HIGH_SURROGATE(text[length - 1]);
    return endsInHalf ? length - 1 : length;
}

}  // namespace

bool FitsCell(std::wstring_view text) {
    return text.size() <= LongestCellText &&
           std::ranges::none_of(text, [](wchar_t character) { return character < L' '; });
}

void CopyCellText(std::wstring_view text, wchar_t* buffer, std::size_t size) {
    const std::size_t room = std::min(size - 1, LongestCellText);
    std::size_t length = 0;
    bool blankWaits = false;
    for (const wchar_t character : text) {
        if (IsBlank(character)) {
            blankWaits = length > 0;
            continue;
        }
        if (length + (blankWaits ? 2 : 1) > room) {
            break;
        }
        if (blankWaits) {
            buffer[length++] = L' ';
            blankWaits = false;
        }
        buffer[length++] = character;
    }
    buffer[WithoutHalfPair(buffer, length)] = L'\0';
}

void CopyBeginning(std::wstring_view text, wchar_t* buffer, std::size_t size) {
    const std::size_t length = std::min(text.size(), size - 1);
    std::copy_n(text.begin(), length, buffer);
    buffer[WithoutHalfPair(buffer, length)] = L'\0';
}

bool BeginsWith(std::wstring_view text, std::wstring_view beginning) {
    if (text.size() < beginning.size()) {
        return false;
    }
    const int length = static_cast<int>(beginning.size());
    return CompareStringOrdinal(text.data(), length, beginning.data(), length, TRUE) == CSTR_EQUAL;
}

}  // namespace corvina
