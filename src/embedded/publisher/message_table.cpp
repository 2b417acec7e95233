#include "embedded/publisher/message_table.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "base/little_endian.h"
#include "base/utf.h"

namespace corvina::publisher {

namespace {

constexpr std::size_t HeaderSize = 4;
constexpr std::size_t BlockSize = 12;
constexpr std::size_t EntryHeaderSize = 4;
constexpr std::uint16_t Utf16Entry = 1;
constexpr std::uint16_t Utf8Entry = 2;

// What code page 1252 has in place of the control characters 0x80 to 0x9F. Five of them stay what they are.
constexpr std::array<wchar_t, 32> WesternCharacters = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                       0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                       0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                       0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

// The code page of an 8-bit text is not stored; most of them are in English or another western language.
std::wstring WideFromWestern(std::span<const std::byte> bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    for (const std::byte byte : bytes) {
        const auto character = std::to_integer<unsigned char>(byte);
        text += character >= 0x80 && character < 0xA0 ? WesternCharacters[character - 0x80U]
                                                      : static_cast<wchar_t>(character);
    }
    return text;
}

// Some compilers write the line breaks of their own system; the platform gives them out in its own form.
void CompleteLineBreaks(std::wstring& text) {
    std::size_t position = text.find(L'\n');
    while (position != std::wstring::npos && position != 0 && text[position - 1] == L'\r') {
        position = text.find(L'\n', position + 1);
    }
    if (position == std::wstring::npos) {
        return;
    }
    std::wstring complete;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == L'\n' && (index == 0 || text[index - 1] != L'\r')) {
            complete += L'\r';
        }
        complete += text[index];
    }
    text = std::move(complete);
}

std::wstring Decode(std::span<const std::byte> bytes, std::uint16_t flags) {
    std::wstring text;
    if ((flags & Utf16Entry) != 0) {
        AppendUtf16(bytes, text);
    } else if ((flags & Utf8Entry) != 0) {
        text = WideFromUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    } else {
        text = WideFromWestern(bytes);
    }
    // Entries are filled up to whole words with zeros.
    text.resize(std::min(text.find(L'\0'), text.size()));
    CompleteLineBreaks(text);
    constexpr std::wstring_view LineBreak = L"\r\n";
    if (text.ends_with(LineBreak)) {
        text.resize(text.size() - LineBreak.size());
    }
    return text;
}

}  // namespace

MessageTable::MessageTable(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {
    if (bytes_.size() < HeaderSize) {
        return;
    }
    const std::size_t held = (bytes_.size() - HeaderSize) / BlockSize;
    const std::size_t count = std::min<std::size_t>(LoadUInt32(bytes_.data()), held);
    for (std::size_t index = 0; index < count; ++index) {
        const std::byte* const block = bytes_.data() + HeaderSize + index * BlockSize;
        AddBlock(LoadUInt32(block), LoadUInt32(block + 4), LoadUInt32(block + 8));
    }
    std::stable_sort(blocks_.begin(), blocks_.end(),
                     [](const Block& left, const Block& right) { return left.First < right.First; });
    const auto startAlike = [](const Block& left, const Block& right) { return left.First == right.First; };
    blocks_.erase(std::unique(blocks_.begin(), blocks_.end(), startAlike), blocks_.end());
}

// Blocks may claim the same entries over and over; there cannot be more entries than fit into the bytes.
void MessageTable::AddBlock(std::uint32_t first, std::uint32_t last, std::size_t place) {
    const std::size_t mostPlaces = bytes_.size() / EntryHeaderSize;
    Block block{first, 0, places_.size()};
    const std::uint64_t stated = last < first ? 0 : std::uint64_t{last} - first + 1;
    while (block.Count < stated && places_.size() < mostPlaces && place <= bytes_.size() - EntryHeaderSize) {
        const std::size_t length = LoadUInt16(bytes_.data() + place);
        if (length < EntryHeaderSize || length > bytes_.size() - place) {
            break;
        }
        places_.push_back(static_cast<std::uint32_t>(place));
        ++block.Count;
        place += length;
    }
    if (block.Count != 0) {
        blocks_.push_back(block);
    }
}

std::optional<std::wstring> MessageTable::Find(std::uint32_t id) const {
    const auto after = std::upper_bound(blocks_.begin(), blocks_.end(), id,
                                        [](std::uint32_t wanted, const Block& block) { return wanted < block.First; });
    if (after == blocks_.begin()) {
        return std::nullopt;
    }
    const Block& block = *(after - 1);
    const std::size_t index = id - block.First;
    if (index >= block.Count) {
        return std::nullopt;
    }
    const std::byte* const entry = bytes_.data() + places_[block.FirstPlace + index];
    const std::size_t length = LoadUInt16(entry);
    return Decode({entry + EntryHeaderSize, length - EntryHeaderSize}, LoadUInt16(entry + 2));
}

std::optional<std::wstring> MessageTables::Find(std::uint32_t id) const {
    for (const std::shared_ptr<const MessageTable>& table : tables_) {
        if (std::optional<std::wstring> text = table->Find(id)) {
            return text;
        }
    }
    return std::nullopt;
}

}  // namespace corvina::publisher
