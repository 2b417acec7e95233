#include "base/identifiers.h"

#include "base/parse_number.h"

namespace corvina {

namespace {

constexpr std::wstring_view UpperHexDigits = L"0123456789ABCDEF";

// The order in which a GUID's bytes appear in its text, and before which of them a dash stands.
constexpr std::array<std::uint8_t, 16> GuidByteOrder = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
constexpr bool DashBefore(std::size_t index) {
    return index == 4 || index == 6 || index == 8 || index == 10;
}

constexpr std::size_t SidHeaderSize = 8;
constexpr std::size_t MaximumSubAuthorities = 15;
constexpr std::uint64_t MaximumAuthority = 0xFFFF'FFFF'FFFF;

void AppendDecimal(std::uint64_t number, std::wstring& text) {
    std::array<wchar_t, 20> digits;
    std::size_t first = digits.size();
    do {
        digits[--first] = static_cast<wchar_t>(L'0' + number % 10);
        number /= 10;
    } while (number != 0);
    text.append(digits.data() + first, digits.size() - first);
}

void AppendAuthority(std::uint64_t authority, std::wstring& text) {
    if (authority <= UINT32_MAX) {
        AppendDecimal(authority, text);
        return;
    }
    text += L"0x";
    for (int shift = 44; shift >= 0; shift -= 4) {
        text += UpperHexDigits[authority >> shift & 0xF];
    }
}

std::uint64_t SidAuthority(std::span<const std::byte> sid) {
    std::uint64_t authority = 0;
    for (std::size_t index = 2; index < SidHeaderSize; ++index) {
        authority = authority << 8 | std::to_integer<std::uint64_t>(sid[index]);
    }
    return authority;
}

std::uint32_t SubAuthority(std::span<const std::byte> sid, std::size_t index) {
    const std::size_t offset = SidHeaderSize + 4 * index;
    return std::to_integer<std::uint32_t>(sid[offset]) | std::to_integer<std::uint32_t>(sid[offset + 1]) << 8 |
           std::to_integer<std::uint32_t>(sid[offset + 2]) << 16 |
           std::to_integer<std::uint32_t>(sid[offset + 3]) << 24;
}

// Takes the part of a security identifier up to the next dash off the front of `text`: decimal, or hexadecimal with
// "0x".
std::optional<std::uint64_t> TakeSidNumber(std::wstring_view& text, std::uint64_t highest) {
    const std::wstring_view digits = text.substr(0, text.find(L'-'));
    text.remove_prefix(digits.size());
    return ParseUnsigned(digits, highest);
}

}  // namespace

std::wstring GuidText(const GuidBytes& guid) {
    std::array<wchar_t, 38> text;
    std::size_t position = 0;
    text[position++] = L'{';
    for (std::size_t index = 0; index < GuidByteOrder.size(); ++index) {
        if (DashBefore(index)) {
            text[position++] = L'-';
        }
        const auto byte = std::to_integer<unsigned>(guid[GuidByteOrder[index]]);
        text[position++] = UpperHexDigits[byte >> 4];
        text[position++] = UpperHexDigits[byte & 0xF];
    }
    text[position] = L'}';
    return std::wstring(text.data(), text.size());
}

std::optional<GuidBytes> ParseGuid(std::wstring_view text) {
    if (text.size() == 38 && text.front() == L'{' && text.back() == L'}') {
        text = text.substr(1, 36);
    }
    if (text.size() != 36) {
        return std::nullopt;
    }
    GuidBytes guid;
    std::size_t position = 0;
    for (std::size_t index = 0; index < GuidByteOrder.size(); ++index) {
        if (DashBefore(index) && text[position++] != L'-') {
            return std::nullopt;
        }
        const std::optional<unsigned> high = HexDigitValue(text[position++]);
        const std::optional<unsigned> low = HexDigitValue(text[position++]);
        if (!high || !low) {
            return std::nullopt;
        }
        guid[GuidByteOrder[index]] = static_cast<std::byte>(*high << 4 | *low);
    }
    return guid;
}

std::size_t SidLength(std::span<const std::byte> bytes) {
    if (bytes.size() < SidHeaderSize || bytes[0] != std::byte{1}) {
        return 0;
    }
    const auto count = std::to_integer<std::size_t>(bytes[1]);
    const std::size_t length = SidHeaderSize + 4 * count;
    return count <= MaximumSubAuthorities && length <= bytes.size() ? length : 0;
}

std::optional<std::wstring> SidText(std::span<const std::byte> sid) {
    if (SidLength(sid) == 0) {
        return std::nullopt;
    }
    std::wstring text;
    text.reserve(64);
    text = L"S-1-";
    AppendAuthority(SidAuthority(sid), text);
    const auto count = std::to_integer<std::size_t>(sid[1]);
    for (std::size_t index = 0; index < count; ++index) {
        text += L'-';
        AppendDecimal(SubAuthority(sid, index), text);
    }
    return text;
}

std::optional<std::basic_string<std::byte>> ParseSid(std::wstring_view text) {
    if (!text.starts_with(L"S-1-") && !text.starts_with(L"s-1-")) {
        return std::nullopt;
    }
    text.remove_prefix(4);
    const std::optional<std::uint64_t> authority = TakeSidNumber(text, MaximumAuthority);
    if (!authority) {
        return std::nullopt;
    }
    std::basic_string<std::byte> sid(SidHeaderSize, std::byte{0});
    sid[0] = std::byte{1};
    for (std::size_t index = 0; index < 6; ++index) {
        sid[2 + index] = static_cast<std::byte>(*authority >> (40 - 8 * index) & 0xFF);
    }
    std::size_t count = 0;
    while (!text.empty()) {
        text.remove_prefix(1);
        const std::optional<std::uint64_t> part = TakeSidNumber(text, UINT32_MAX);
        if (!part || count == MaximumSubAuthorities) {
            return std::nullopt;
        }
        for (int shift = 0; shift < 32; shift += 8) {
            sid.push_back(static_cast<std::byte>(*part >> shift & 0xFF));
        }
        ++count;
    }
    sid[1] = static_cast<std::byte>(count);
    return sid;
}

}  // namespace corvina
