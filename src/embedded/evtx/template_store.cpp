#include "embedded/evtx/template_store.h"

#include <algorithm>
#include <utility>

#include "embedded/evtx/binary_xml_parser.h"
#include "embedded/evtx/rendering_code.h"

namespace corvina::evtx {
namespace {

constexpr std::size_t DefinitionHeaderSize = 24;  // next definition, GUID, length
constexpr std::size_t DefinitionLengthField = 20;
constexpr std::size_t ValueDescriptorSize = 4;

}  // namespace

// Descriptors of size and type, then the bytes back to back.
bool ReadInstanceValues(ByteReader& reader, std::vector<Value>& values, std::size_t most) {
    std::uint32_t count = 0;
    if (!reader.Read(count) || count > reader.Remaining() / ValueDescriptorSize) {
        return false;
    }
    const std::byte* descriptor = reader.Bytes().data() + reader.Position();
    std::size_t offset = reader.Position() + count * ValueDescriptorSize;
    const std::size_t first = values.size();
    values.resize(first + std::min<std::size_t>(count, most));
    for (std::size_t index = first; index < values.size(); ++index, descriptor += ValueDescriptorSize) {
        const std::size_t size = LoadUInt16(descriptor);
        const std::uint8_t type = LoadUInt8(descriptor + 2);
        if (size > reader.End() - offset) {
            return false;
        }
        values[index] = {static_cast<ValueType>(type & ~ArrayFlag), (type & ArrayFlag) != 0,
                         static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(size)};
        offset += size;
    }
    return reader.Skip(offset - reader.Position());
}

Program* TemplateStore::ReadInstance(ByteReader& reader) {
    std::uint8_t one = 0;
    std::uint32_t ignoredIdentifier = 0;
    std::uint32_t offset = 0;
    if (!reader.Read(one) || !reader.Read(ignoredIdentifier) || !reader.Read(offset)) {
        return nullptr;
    }
    Program* program = Find(offset);
    if (program == nullptr) {
        return nullptr;
    }
    if (offset == reader.Position()) {
        const std::uint32_t length = LoadUInt32(chunk_.data() + offset + DefinitionLengthField);
        if (!reader.Skip(DefinitionHeaderSize + length)) {
            return nullptr;
        }
    }
    return program;
}

Program* TemplateStore::Find(std::uint32_t offset) {
    RecentProgram& recent = recent_[offset / 2 % recent_.size()];
    if (recent.Offset != offset) {
        const auto [entry, isNew] = programs_.try_emplace(offset);
        if (isNew) {
            entry->second = Compile(offset);
        }
        recent = {offset, entry->second.get()};
    }
    return recent.Found;
}

std::unique_ptr<Program> TemplateStore::Compile(std::uint32_t offset) {
    if (offset > chunk_.size() || chunk_.size() - offset < DefinitionHeaderSize) {
        return nullptr;
    }
    const std::size_t begin = offset + DefinitionHeaderSize;
    const std::size_t length = LoadUInt32(chunk_.data() + offset + DefinitionLengthField);
    if (length > chunk_.size() - begin || length > allowance_) {
        return nullptr;
    }
    allowance_ -= length;
    auto program = std::make_unique<Program>();
    ByteReader reader(chunk_, begin, begin + length);
    return SkipFragmentHeaders(reader) && ParseElements(reader, true, *program) ? std::move(program) : nullptr;
}

bool TemplateStore::MakeRenderingOf(Program& program) {
    if (program.HasRendering == Program::RenderingState::Unmade) {
        program.HasRendering = Program::RenderingState::TooLong;
        if (MakeRendering(chunk_, allowance_, program)) {
            allowance_ -= program.Literals.size();
            program.HasRendering = Program::RenderingState::Made;
        }
    }
    return program.HasRendering == Program::RenderingState::Made;
}

}  // namespace corvina::evtx
