#include "embedded/evtx/template_definition.h"

#include <algorithm>

namespace corvina::evtx {
namespace {

constexpr std::size_t HeaderSize = 24;  // next definition, GUID, length
constexpr std::size_t IdentifierField = 4;
constexpr std::size_t LengthField = 20;

}  // namespace

std::optional<TemplateDefinition> FindTemplateDefinition(std::span<const std::byte> chunk, std::uint32_t offset,
                                                         std::size_t most) {
    if (offset > chunk.size() || chunk.size() - offset < HeaderSize) {
        return std::nullopt;
    }
    const std::size_t begin = offset + HeaderSize;
    const std::size_t length = LoadUInt32(chunk.data() + offset + LengthField);
    if (length > chunk.size() - begin || length > most) {
        return std::nullopt;
    }
    TemplateDefinition found{.Content = ByteReader(chunk, begin, begin + length)};
    std::copy_n(chunk.begin() + offset + IdentifierField, found.Identifier.size(), found.Identifier.begin());
    return found;
}

bool ReadInstanceHead(ByteReader& reader, std::uint32_t& offset) {
    std::uint8_t one = 0;
    std::uint32_t ignoredIdentifier = 0;
    return reader.Read(one) && reader.Read(ignoredIdentifier) && reader.Read(offset);
}

bool PassOwnDefinition(ByteReader& reader, std::uint32_t offset) {
    if (offset != reader.Position()) {
        return true;
    }
    const std::uint32_t length = LoadUInt32(reader.Bytes().data() + offset + LengthField);
    return reader.Skip(HeaderSize + length);
}

}  // namespace corvina::evtx
