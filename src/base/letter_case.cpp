#include "base/letter_case.h"

#include <algorithm>
#include <type_traits>

namespace corvina {

namespace {

// Alphabets in which upper and lower case letters alternate, the upper case one being even or odd.
bool AlternatesFromEven(unsigned character) {
    return (character >= 0x100 && character <= 0x137 && character != 0x131) ||
           (character >= 0x14A && character <= 0x177) || (character >= 0x460 && character <= 0x481) ||
           (character >= 0x48A && character <= 0x4BF) || (character >= 0x4D0 && character <= 0x52F) ||
           (character >= 0x1E00 && character <= 0x1E95) || (character >= 0x1EA0 && character <= 0x1EFF);
}

bool AlternatesFromOdd(unsigned character) {
    return (character >= 0x139 && character <= 0x148) || (character >= 0x179 && character <= 0x17E);
}

unsigned UpperCaseOfOther(unsigned character) {
    if (character >= 0xE0 && character <= 0xFE && character != 0xF7) {
        return character - 0x20;
    }
    if (character == 0xFF) {
        return 0x178;
    }
    if (AlternatesFromEven(character)) {
        return character & ~1U;
    }
    if (AlternatesFromOdd(character)) {
        return character % 2 == 0 ? character - 1 : character;
    }
    if (character == 0x3C2 || (character >= 0x3B1 && character <= 0x3CB)) {
        return character == 0x3C2 ? 0x3A3 : character - 0x20;
    }
    if (character == 0x3AC) {
        return 0x386;
    }
    if (character >= 0x3AD && character <= 0x3AF) {
        return character - 0x25;
    }
    if (character >= 0x3CC && character <= 0x3CE) {
        return character == 0x3CC ? 0x38C : character - 0x3F;
    }
    if (character >= 0x430 && character <= 0x44F) {
        return character - 0x20;
    }
    if (character >= 0x450 && character <= 0x45F) {
        return character - 0x50;
    }
    if (character >= 0x561 && character <= 0x586) {
        return character - 0x30;
    }
    return character;
}

// Nearly all characters of events are ASCII, so the others are kept out of the way.
inline wchar_t FastUpperCase(wchar_t character) {
    const unsigned code = static_cast<std::make_unsigned_t<wchar_t>>(character);
    if (code < 0x80) {
        return code - L'a' < 26 ? static_cast<wchar_t>(code - 0x20) : character;
    }
    return static_cast<wchar_t>(UpperCaseOfOther(code));
}

}  // namespace

wchar_t UpperCase(wchar_t character) {
    return FastUpperCase(character);
}

std::wstring UpperCase(std::wstring_view text) {
    std::wstring upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](wchar_t character) { return UpperCase(character); });
    return upper;
}

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](wchar_t one, wchar_t other) { return UpperCase(one) == UpperCase(other); });
}

bool ContainsIgnoringCase(std::wstring_view text, std::wstring_view part) {
    if (part.empty()) {
        return true;
    }
    const std::wstring upperPart = UpperCase(part);
    const wchar_t first = upperPart.front();
    for (std::size_t start = 0; start + part.size() <= text.size(); ++start) {
        if (FastUpperCase(text[start]) == first &&
            std::equal(upperPart.begin() + 1, upperPart.end(), text.begin() + static_cast<std::ptrdiff_t>(start) + 1,
                       [](wchar_t upper, wchar_t character) { return upper == FastUpperCase(character); })) {
            return true;
        }
    }
    return false;
}

}  // namespace corvina
