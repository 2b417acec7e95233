#include "embedded/evtx/template_store.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "embedded/evtx/binary_xml_parser.h"
#include "embedded/evtx/rendering_code.h"
#include "embedded/evtx/template_definition.h"
#include "embedded/evtx/xml_text.h"

namespace corvina::evtx {
namespace {

constexpr std::size_t ValueDescriptorSize = 4;

}  // namespace

// Descriptors of size and type, then the bytes back to back.
bool ReadInstanceValues(ByteReader& reader, ValueList& values, std::size_t most) {
    std::uint32_t count = 0;
    if (!reader.Read(count) || count > reader.Remaining() / ValueDescriptorSize) {
        return false;
    }
    const std::byte* descriptor = reader.Bytes().data() + reader.Position();
    std::size_t offset = reader.Position() + count * ValueDescriptorSize;
    const std::size_t end = reader.End();
    for (Value& value : values.Add(std::min<std::size_t>(count, most))) {
        const std::uint32_t size = LoadUInt16(descriptor);
        const std::uint8_t type = LoadUInt8(descriptor + 2);
        if (size > end - offset) {
            return false;
        }
        value = {static_cast<ValueType>(type & ~ArrayFlag), (type & ArrayFlag) != 0, static_cast<std::uint32_t>(offset),
                 size};
        offset += size;
        descriptor += ValueDescriptorSize;
    }
    return reader.Skip(offset - reader.Position());
}

ChunkTemplate* TemplateStore::ReadInstance(ByteReader& reader) {
    std::uint32_t offset = 0;
    if (!ReadInstanceHead(reader, offset)) {
        return nullptr;
    }
    ChunkTemplate* const found = Find(offset);
    return found != nullptr && PassOwnDefinition(reader, offset) ? found : nullptr;
}

ChunkTemplate* TemplateStore::Find(std::uint32_t offset) {
    RecentTemplate& recent = recent_[offset / 2 % recent_.size()];
    if (recent.Offset != offset) {
        const auto [entry, isNew] = templates_.try_emplace(offset);
        if (isNew) {
            entry->second.Code = Compile(offset);
        }
        recent = {offset, entry->second.Code == nullptr ? nullptr : &entry->second};
    }
    return recent.Found;
}

std::shared_ptr<Program> TemplateStore::Compile(std::uint32_t offset) {
    const std::optional<TemplateDefinition> definition = FindTemplateDefinition(chunk_, offset, allowance_);
    if (!definition) {
        return nullptr;
    }
    const auto& [identifier, content] = *definition;
    allowance_ -= content.Remaining();
    std::shared_ptr<Program> program = kept_ == nullptr ? nullptr : kept_->Find(identifier, content);
    if (program != nullptr) {
        return program;
    }
    program = std::make_shared<Program>();
    std::vector<NameReference> names;
    ByteReader reader = content;
    if (!SkipFragmentHeaders(reader) || !ParseDefinition(reader, *program, names)) {
        return nullptr;
    }
    if (kept_ != nullptr) {
        kept_->Keep(identifier, content, reader.Position(), names, program);
    }
    return program;
}

bool TemplateStore::MakeRenderingOf(ChunkTemplate& found) {
    using State = ChunkTemplate::RenderingState;
    if (found.Rendering == State::Unmade) {
        found.Rendering = State::TooLong;
        Program& program = *found.Code;
        // Another chunk may have had more left.
        const bool isMade = program.HasRendering || MakeRendering(allowance_, program);
        if (isMade && program.Literals.size() <= allowance_ + LiteralPadding) {
            allowance_ -= std::min(allowance_, program.Literals.size());
            found.Rendering = State::Made;
        }
    }
    return found.Rendering == State::Made;
}

}  // namespace corvina::evtx
