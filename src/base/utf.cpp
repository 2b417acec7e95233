#include "base/utf.h"

#include <cstdint>
#include <cstring>

namespace corvina {

namespace {

constexpr char32_t Replacement = 0xFFFD;
constexpr char32_t LastCodePoint = 0x10FFFF;

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr bool IsSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

constexpr char32_t JoinSurrogates(char32_t high, char32_t low) {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

char32_t UnitAt(std::span<const std::byte> utf16, std::size_t index) {
    return static_cast<char32_t>(std::to_integer<unsigned>(utf16[2 * index]) |
                                 std::to_integer<unsigned>(utf16[2 * index + 1]) << 8);
}

void AppendWide(char32_t codePoint, std::wstring& text) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (codePoint >= 0x10000) {
            text += static_cast<wchar_t>(0xD7C0 + (codePoint >> 10));
            text += static_cast<wchar_t>(0xDC00 + (codePoint & 0x3FF));
            return;
        }
    }
    text += static_cast<wchar_t>(codePoint);
}

void AppendUtf8CodePoint(char32_t codePoint, std::string& utf8) {
    if (codePoint > LastCodePoint || IsSurrogate(codePoint)) {
        codePoint = Replacement;
    }
    char bytes[4];
    std::size_t count = 0;
    if (codePoint < 0x80) {
        bytes[count++] = static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        bytes[count++] = static_cast<char>(0xC0 | (codePoint >> 6));
        bytes[count++] = static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        bytes[count++] = static_cast<char>(0xE0 | (codePoint >> 12));
        bytes[count++] = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        bytes[count++] = static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        bytes[count++] = static_cast<char>(0xF0 | (codePoint >> 18));
        bytes[count++] = static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        bytes[count++] = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        bytes[count++] = static_cast<char>(0x80 | (codePoint & 0x3F));
    }
    utf8.append(bytes, count);
}

// Appends `count` units as UTF-8; `unitAt` gives each one as a number.
template <typename UnitReader>
void AppendUnitsAsUtf8(std::size_t count, UnitReader unitAt, std::string& utf8) {
    std::size_t index = 0;
    while (index < count) {
        // Nearly all texts of events are ASCII, so runs of it go over at once.
        std::size_t end = index;
        while (end < count && unitAt(end) < 0x80) {
            ++end;
        }
        const std::size_t start = utf8.size();
        utf8.resize(start + (end - index));
        for (char* out = utf8.data() + start; index < end; ++index) {
            *out++ = static_cast<char>(unitAt(index));
        }
        if (index == count) {
            return;
        }
        char32_t unit = unitAt(index++);
        if (IsHighSurrogate(unit) && index < count && IsLowSurrogate(unitAt(index))) {
            unit = JoinSurrogates(unit, unitAt(index++));
        }
        AppendUtf8CodePoint(unit, utf8);
    }
}

// What may follow a lead byte. The limits of the second byte rule out overlong forms, surrogates and numbers beyond
// Unicode, so nothing has to be checked after decoding.
struct LeadByte {
    std::size_t Following = 0;
    char32_t Bits = 0;
    unsigned SecondLowest = 0x80;
    unsigned SecondHighest = 0xBF;
};

LeadByte ReadLeadByte(unsigned lead) {
    LeadByte result;
    if (lead >= 0xC2 && lead <= 0xDF) {
        result.Following = 1;
        result.Bits = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        result.Following = 2;
        result.Bits = lead & 0x0F;
        result.SecondLowest = lead == 0xE0 ? 0xA0 : 0x80;
        result.SecondHighest = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        result.Following = 3;
        result.Bits = lead & 0x07;
        result.SecondLowest = lead == 0xF0 ? 0x90 : 0x80;
        result.SecondHighest = lead == 0xF4 ? 0x8F : 0xBF;
    }
    return result;
}

// Decodes the sequence at `position`, which is moved behind it. An invalid sequence is passed over as far as it could
// still have become a valid one, and gives one replacement character.
char32_t DecodeUtf8(std::string_view utf8, std::size_t& position) {
    const LeadByte lead = ReadLeadByte(static_cast<unsigned char>(utf8[position++]));
    if (lead.Following == 0) {
        return Replacement;
    }
    char32_t codePoint = lead.Bits;
    unsigned lowest = lead.SecondLowest;
    unsigned highest = lead.SecondHighest;
    for (std::size_t count = 0; count < lead.Following; ++count) {
        if (position >= utf8.size()) {
            return Replacement;
        }
        const unsigned next = static_cast<unsigned char>(utf8[position]);
        if (next < lowest || next > highest) {
            return Replacement;
        }
        codePoint = codePoint << 6 | (next & 0x3F);
        lowest = 0x80;
        highest = 0xBF;
        ++position;
    }
    return codePoint;
}

}  // namespace

void AppendUtf16(std::span<const std::byte> utf16, std::wstring& text) {
    const std::size_t count = utf16.size() / 2;
    if (count == 0) {
        return;
    }
    const std::size_t start = text.size();
    text.resize(start + count);
    wchar_t* out = text.data() + start;
    if constexpr (sizeof(wchar_t) == 2) {
        std::memcpy(out, utf16.data(), 2 * count);
    } else {
        for (std::size_t index = 0; index < count; ++index) {
            char32_t unit = UnitAt(utf16, index);
            if (IsHighSurrogate(unit) && index + 1 < count && IsLowSurrogate(UnitAt(utf16, index + 1))) {
                unit = JoinSurrogates(unit, UnitAt(utf16, index + 1));
                ++index;
            }
            *out++ = static_cast<wchar_t>(unit);
        }
        text.resize(static_cast<std::size_t>(out - text.data()));
    }
}

std::wstring WideFromUtf8(std::string_view utf8) {
    std::wstring text;
    text.reserve(utf8.size());
    std::size_t position = 0;
    while (position < utf8.size()) {
        const auto byte = static_cast<unsigned char>(utf8[position]);
        if (byte < 0x80) {
            text += static_cast<wchar_t>(byte);
            ++position;
        } else {
            AppendWide(DecodeUtf8(utf8, position), text);
        }
    }
    return text;
}

std::string Utf8FromWide(std::wstring_view text) {
    std::string utf8;
    AppendUtf8(text, utf8);
    return utf8;
}

void AppendUtf8(std::wstring_view text, std::string& utf8) {
    AppendUnitsAsUtf8(
        text.size(), [text](std::size_t index) { return static_cast<char32_t>(text[index]); }, utf8);
}

void AppendUtf8FromUtf16(std::span<const std::byte> utf16, std::string& utf8) {
    AppendUnitsAsUtf8(
        utf16.size() / 2, [utf16](std::size_t index) { return UnitAt(utf16, index); }, utf8);
}

std::size_t UnitsOfCharacter(std::wstring_view text, std::size_t index) {
    const bool isPair = IsHighSurrogate(static_cast<char32_t>(text[index])) && index + 1 < text.size() &&
                        IsLowSurrogate(static_cast<char32_t>(text[index + 1]));
    return isPair ? 2 : 1;
}

void AppendUtf16Bytes(std::wstring_view text, std::string& bytes) {
    const auto appendUnit = [&bytes](char32_t unit) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8 & 0xFF);
    };
    bytes.reserve(bytes.size() + 2 * text.size());
    for (const wchar_t character : text) {
        auto unit = static_cast<char32_t>(character);
        if (unit > LastCodePoint) {
            unit = Replacement;
        }
        if (unit >= 0x10000) {
            appendUnit(0xD7C0 + (unit >> 10));
            appendUnit(0xDC00 + (unit & 0x3FF));
        } else {
            appendUnit(unit);
        }
    }
}

}  // namespace corvina
