#include "embedded/evtx/xml_text.h"

#include <array>
#include <cstdint>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/xml_characters.h"

#if defined(__SSE2__) || defined(_M_X64)  // every processor with 64 bits of this kind
#include <emmintrin.h>
#define CORVINA_SSE2
#endif

namespace corvina::evtx {
namespace {

// The most characters that one unit of the source can become: a reference such as "&quot;".
constexpr std::size_t LongestEscape = 6;

// For each character below 128 whether it needs no escaping: 1 or 0.
using PlainTable = std::array<std::uint8_t, 128>;

constexpr PlainTable MakePlainTable(Escaping escaping) {
    PlainTable plain{};
    for (char32_t character = 0; character < 128; ++character) {
        const bool markup = character == '&' || character == '<' || character == '>';
        plain[character] = escaping == Escaping::None || IsXmlCharacter(character) ? 1 : 0;
        if ((escaping == Escaping::Text || escaping == Escaping::Attribute) && markup) {
            plain[character] = 0;
        }
        if (escaping == Escaping::Attribute && character == '\'') {
            plain[character] = 0;
        }
    }
    return plain;
}

// By the order of the enumeration.
constexpr std::array<PlainTable, 4> PlainTables = {MakePlainTable(Escaping::None), MakePlainTable(Escaping::Text),
                                                   MakePlainTable(Escaping::Attribute),
                                                   MakePlainTable(Escaping::Forbidden)};

constexpr const PlainTable& PlainTableOf(Escaping escaping) {
    return PlainTables[static_cast<std::size_t>(escaping)];
}

// What Windows-1252 has at 0x80 to 0x9F; its five gaps are kept as control characters, as Windows does.
constexpr std::array<char16_t, 32> AnsiExtras = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char* PutCharacter(char32_t character, char* out) {
    const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | (character >> 6));
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | (character >> 12));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | (character >> 18));
        put(0x80 | ((character >> 12) & 0x3F));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    }
    return out;
}

wchar_t* PutCharacter(char32_t character, wchar_t* out) {
    if (sizeof(wchar_t) == 2 && character >= 0x10000) {
        *out++ = static_cast<wchar_t>(0xD7C0 + (character >> 10));
        *out++ = static_cast<wchar_t>(0xDC00 + (character & 0x3FF));
    } else {
        *out++ = static_cast<wchar_t>(character);
    }
    return out;
}

template <typename Char>
Char* PutAscii(std::string_view ascii, Char* out) {
    for (const char character : ascii) {
        *out++ = static_cast<Char>(character);
    }
    return out;
}

// A character that is not plain: escaped, replaced, or outside ASCII.
template <typename Char>
Char* PutSpecial(char32_t character, Escaping escaping, Char* out) {
    if (escaping != Escaping::None && !IsXmlCharacter(character)) {
        return PutCharacter(ReplacementCharacter, out);
    }
    if (character >= 0x80) {
        // UTF-8 has no form for a half surrogate.
        const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
        return PutCharacter(sizeof(Char) == 1 && surrogate ? ReplacementCharacter : character, out);
    }
    switch (character) {
        case '&':
            return PutAscii("&amp;", out);
        case '<':
            return PutAscii("&lt;", out);
        case '>':
            return PutAscii("&gt;", out);
        default:
            return PutAscii("&apos;", out);
    }
}

bool IsPlain(char32_t character, const PlainTable& plain) {
    return character < 128 && plain[character];
}

// Copies characters that are plain in every escaping eight at a time, as far as nothing else is among them.
template <typename Char>
Char* CopyPlainBlocks([[maybe_unused]] const std::byte*& unit, [[maybe_unused]] const std::byte* end, Char* out) {
#ifdef CORVINA_SSE2
    const __m128i control = _mm_set1_epi8(0x20);
    const __m128i quote = _mm_set1_epi8('&' | 1);    // with the lowest bit set, & and ' are the same
    const __m128i bracket = _mm_set1_epi8('<' | 2);  // and so are < and > with the next
    for (; end - unit >= 16; unit += 16, out += 8) {
        // Bytes are signed here: what does not fit becomes 0 or negative, and is below all plain characters.
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(unit));
        const __m128i bytes = _mm_packus_epi16(units, units);
        const __m128i special =
            _mm_or_si128(_mm_cmplt_epi8(bytes, control),
                         _mm_or_si128(_mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(1)), quote),
                                      _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(2)), bracket)));
        if (_mm_movemask_epi8(special) != 0) {
            break;
        }
        if constexpr (sizeof(Char) == 1) {
            _mm_storel_epi64(reinterpret_cast<__m128i*>(out), bytes);
        } else {
            for (std::size_t index = 0; index < 8; ++index) {
                out[index] = static_cast<Char>(LoadUInt16(unit + 2 * index));
            }
        }
    }
#endif
    return out;
}

// Copies plain characters four at a time up to the first group that is not all plain: nearly all texts are.
template <typename Char>
Char* CopyPlainGroups(const std::byte*& unit, const std::byte* end, const PlainTable& plain, Char* out) {
    constexpr std::uint64_t NotAscii = 0xFF80'FF80'FF80'FF80;
    while (end - unit >= 8) {
        const std::uint64_t group = LoadUInt64(unit);
        if ((group & NotAscii) != 0 ||
            (plain[group & 0x7F] & plain[group >> 16 & 0x7F] & plain[group >> 32 & 0x7F] & plain[group >> 48]) == 0) {
            break;
        }
        out[0] = static_cast<Char>(group & 0x7F);
        out[1] = static_cast<Char>(group >> 16 & 0x7F);
        out[2] = static_cast<Char>(group >> 32 & 0x7F);
        out[3] = static_cast<Char>(group >> 48);
        out += 4;
        unit += 8;
    }
    return out;
}

}  // namespace

template <typename Char>
void AppendUtf16Text(std::span<const std::byte> utf16, Escaping escaping, TextBuffer<Char>& text) {
    const PlainTable& plain = PlainTableOf(escaping);
    const std::byte* unit = utf16.data();
    const std::byte* const end = unit + (utf16.size() & ~std::size_t{1});
    Char* out = text.Room(LongestEscape * (utf16.size() / 2));
    while (unit != end) {
        out = CopyPlainGroups(unit, end, plain, CopyPlainBlocks(unit, end, out));
        if (unit == end) {
            break;
        }
        char32_t character = LoadUInt16(unit);
        unit += 2;
        if (IsPlain(character, plain)) {
            *out++ = static_cast<Char>(character);
            continue;
        }
        if (IsHighSurrogate(character) && unit != end && IsLowSurrogate(LoadUInt16(unit))) {
            character = JoinSurrogates(character, LoadUInt16(unit));
            unit += 2;
        }
        out = PutSpecial(character, escaping, out);
    }
    text.SetEnd(out);
}

template <typename Char>
void AppendAnsiText(std::span<const std::byte> ansi, Escaping escaping, TextBuffer<Char>& text) {
    for (const std::byte byte : ansi) {
        const auto code = std::to_integer<std::uint8_t>(byte);
        AppendCharacter(code >= 0x80 && code < 0xA0 ? AnsiExtras[code - 0x80U] : char32_t{code}, escaping, text);
    }
}

template <typename Char>
void AppendCharacter(char32_t character, Escaping escaping, TextBuffer<Char>& text) {
    Char* out = text.Room(LongestEscape);
    if (IsPlain(character, PlainTableOf(escaping))) {
        *out++ = static_cast<Char>(character);
    } else {
        out = PutSpecial(character, escaping, out);
    }
    text.SetEnd(out);
}

template <typename Char>
void AppendAscii(std::string_view ascii, TextBuffer<Char>& text) {
    text.SetEnd(PutAscii(ascii, text.Room(ascii.size())));
}

void AppendWideLiteral(std::string_view utf8, TextBuffer<wchar_t>& text) {
    wchar_t* out = text.Room(utf8.size());
    for (std::size_t index = 0; index < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[index++]);
        const unsigned following = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        char32_t character = following == 0 ? lead : lead & (0x3FU >> following);
        for (unsigned count = 0; count < following; ++count) {
            character = character << 6 | (static_cast<unsigned char>(utf8[index++]) & 0x3FU);
        }
        out = PutCharacter(character, out);
    }
    text.SetEnd(out);
}

template void AppendUtf16Text(std::span<const std::byte>, Escaping, TextBuffer<char>&);
template void AppendUtf16Text(std::span<const std::byte>, Escaping, TextBuffer<wchar_t>&);
template void AppendAnsiText(std::span<const std::byte>, Escaping, TextBuffer<char>&);
template void AppendAnsiText(std::span<const std::byte>, Escaping, TextBuffer<wchar_t>&);
template void AppendCharacter(char32_t, Escaping, TextBuffer<char>&);
template void AppendCharacter(char32_t, Escaping, TextBuffer<wchar_t>&);
template void AppendAscii(std::string_view, TextBuffer<char>&);
template void AppendAscii(std::string_view, TextBuffer<wchar_t>&);

}  // namespace corvina::evtx
