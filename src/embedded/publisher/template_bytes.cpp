#include "embedded/publisher/template_bytes.h"

#include <algorithm>

#include "base/little_endian.h"
#include "base/utf.h"

namespace corvina::publisher {

std::span<const std::byte> TemplateBytes::Part(std::size_t offset, std::size_t size) const {
    if (offset > bytes_.size() || size > bytes_.size() - offset) {
        return {};
    }
    return bytes_.subspan(offset, size);
}

std::span<const std::byte> TemplateBytes::Entries(std::size_t offset, std::size_t count, std::size_t entrySize) const {
    if (offset > bytes_.size()) {
        return {};
    }
    return bytes_.subspan(offset, std::min(count, (bytes_.size() - offset) / entrySize) * entrySize);
}

bool TemplateBytes::ReadText(std::uint32_t offset, std::wstring& text) {
    constexpr std::size_t HeaderSize = 4;
    const std::span<const std::byte> header = Part(offset, HeaderSize);
    const std::size_t size = header.empty() ? 0 : LoadUInt32(header.data());
    const std::span<const std::byte> whole = Part(offset, size);
    if (whole.size() < HeaderSize || !Spend(size / 2)) {
        return false;
    }
    text.clear();
    AppendUtf16(whole.subspan(HeaderSize), text);
    text.resize(std::min(text.find(L'\0'), text.size()));
    return true;
}

bool TemplateBytes::Spend(std::size_t characters) {
    if (characters > charactersLeft_) {
        charactersLeft_ = 0;
        return false;
    }
    charactersLeft_ -= characters;
    return true;
}

}  // namespace corvina::publisher
