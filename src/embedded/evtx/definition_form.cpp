#include "embedded/evtx/definition_form.h"

#include <cstring>

namespace corvina::evtx {
namespace {

constexpr std::size_t NameLengthField = 6;  // in front of the text of a name
constexpr std::size_t NameLengthSize = 2;

std::span<const std::byte> TextOf(const NameReference& name, const Program& program) {
    return program.TextOf(program.Structure[name.Index]);
}

std::size_t PatternSize(std::size_t begin, std::size_t end, std::span<const NameReference> names,
                        const Program& program) {
    std::size_t size = end - begin;
    for (const NameReference& name : names) {
        size += NameLengthSize + TextOf(name, program).size() - (name.End - name.Begin);
    }
    return size;
}

}  // namespace

DefinitionForm::DefinitionForm(const ByteReader& content, std::size_t contentEnd, std::span<const NameReference> names,
                               const Program& program)
    : takesAll_(contentEnd == content.End()) {
    const std::span<const std::byte> chunk = content.Bytes();
    const auto add = [this](std::span<const std::byte> bytes) {
        pattern_.insert(pattern_.end(), bytes.begin(), bytes.end());
        return bytes.size();
    };
    parts_.reserve(names.size());
    pattern_.reserve(PatternSize(content.Position(), contentEnd, names, program));
    std::size_t position = content.Position();
    for (const NameReference& name : names) {
        Part& part = parts_.emplace_back();
        part.SizeBefore = name.SizeBefore;
        part.SizeBehind = name.SizeBehind;
        part.RunSize = static_cast<std::uint32_t>(add(chunk.subspan(position, name.Begin - position)));
        const std::span<const std::byte> text = TextOf(name, program);
        const std::byte length[NameLengthSize] = {static_cast<std::byte>(text.size() / 2),
                                                  static_cast<std::byte>(text.size() / 2 >> 8)};
        part.NameSize = static_cast<std::uint16_t>(add(length) + add(text));
        position = name.End;
    }
    lastRunSize_ = add(chunk.subspan(position, contentEnd - position));
}

bool DefinitionForm::IsFormOf(ByteReader content) const {
    const std::byte* expected = pattern_.data();
    for (const Part& part : parts_) {
        if (!PassRun(content, expected, part.RunSize) || !PassName(content, expected + part.RunSize, part)) {
            return false;
        }
        expected += part.RunSize + part.NameSize;
    }
    return PassRun(content, expected, lastRunSize_) && (!takesAll_ || content.Remaining() == 0);
}

bool DefinitionForm::PassRun(ByteReader& content, const std::byte* run, std::size_t size) {
    const std::byte* const bytes = content.Bytes().data() + content.Position();
    return content.Skip(size) && std::memcmp(bytes, run, size) == 0;
}

// The name is one that was found to be a name already, so it is enough that it is stored at the offset.
bool DefinitionForm::PassName(ByteReader& content, const std::byte* name, const Part& part) {
    const std::span<const std::byte> chunk = content.Bytes();
    const std::size_t storedSize = NameLengthField + part.NameSize;
    std::uint32_t offset = 0;
    if (!content.Skip(part.SizeBefore) || !content.Read(offset) || chunk.size() < storedSize ||
        offset > chunk.size() - storedSize ||
        std::memcmp(chunk.data() + offset + NameLengthField, name, part.NameSize) != 0) {
        return false;
    }
    const bool isStoredHere = offset == content.Position();
    return (!isStoredHere || content.Skip(storedSize + NameTerminatorSize)) && content.Skip(part.SizeBehind);
}

}  // namespace corvina::evtx
