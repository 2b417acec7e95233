// The template definitions of one chunk, compiled on first use, or known from another chunk of the file, and the
// instances that refer to them.
// Definitions are found by their place alone: the chunk's own table of them may be stale or garbage.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <utility>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/kept_templates.h"
#include "embedded/evtx/program.h"
#include "embedded/evtx/value_list.h"

namespace corvina::evtx {

// Reads the values of an instance, which follow its definition, and appends them to `values`: all of them, or the first
// `most` without a look at the others. False when they leave the bounds.
bool ReadInstanceValues(ByteReader& reader, ValueList& values, std::size_t most = SIZE_MAX);

// A definition of a chunk. Its program may be shared with other chunks; what it may cost is counted for each of them,
// so that a record is read the same whatever was read before.
struct ChunkTemplate {
    enum class RenderingState : std::uint8_t { Unmade, Made, TooLong };

    std::shared_ptr<Program> Code;  // none for an invalid definition
    RenderingState Rendering = RenderingState::Unmade;
};

class TemplateStore {
  public:
    // `kept` may be none: then everything is compiled here.
    TemplateStore(std::span<const std::byte> chunk, std::shared_ptr<KeptTemplates> kept)
        : chunk_(chunk), kept_(std::move(kept)) {}

    std::span<const std::byte> Chunk() const { return chunk_; }

    // Reads a template instance behind its token up to its values: its definition. None when the instance leaves its
    // bounds or its definition is invalid. Its program may have a structure only.
    ChunkTemplate* ReadInstance(ByteReader& reader);

    // Makes the rendering of a template's program unless it is there. False when it would be too long.
    bool MakeRenderingOf(ChunkTemplate& found);

  private:
    ChunkTemplate* Find(std::uint32_t offset);
    std::shared_ptr<Program> Compile(std::uint32_t offset);

    std::span<const std::byte> chunk_;
    std::shared_ptr<KeptTemplates> kept_;
    std::unordered_map<std::uint32_t, ChunkTemplate> templates_;
    // The template found last for each of some places: records of a chunk share few templates.
    struct RecentTemplate {
        std::uint32_t Offset = UINT32_MAX;
        ChunkTemplate* Found = nullptr;  // none for an invalid definition
    };
    std::array<RecentTemplate, 64> recent_;
    // What definitions may still cost, in bytes read and made: a damaged chunk can refer to as many overlapping ones as
    // it has records, a sound one has each of its bytes in at most one.
    std::size_t allowance_ = std::size_t{4} << 20;
};

}  // namespace corvina::evtx
