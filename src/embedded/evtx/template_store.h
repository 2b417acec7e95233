// The template definitions of one chunk, compiled on first use and kept, and the instances that refer to them.
// Definitions are found by their place alone: the chunk's own table of them may be stale or garbage.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/program.h"
#include "embedded/evtx/value.h"

namespace corvina::evtx {

// Reads the values of an instance, which follow its definition, and appends them to `values`: all of them, or the first
// `most` without a look at the others. False when they leave the bounds.
bool ReadInstanceValues(ByteReader& reader, std::vector<Value>& values, std::size_t most = SIZE_MAX);

class TemplateStore {
  public:
    explicit TemplateStore(std::span<const std::byte> chunk) : chunk_(chunk) {}

    std::span<const std::byte> Chunk() const { return chunk_; }

    // Reads a template instance behind its token up to its values: its definition. None when the instance leaves its
    // bounds or its definition is invalid. The program has a structure only.
    Program* ReadInstance(ByteReader& reader);

    // Makes the rendering of a template's program unless it is there. False when it would be too long.
    bool MakeRenderingOf(Program& program);

  private:
    Program* Find(std::uint32_t offset);
    std::unique_ptr<Program> Compile(std::uint32_t offset);

    std::span<const std::byte> chunk_;
    std::unordered_map<std::uint32_t, std::unique_ptr<Program>> programs_;  // none for invalid definitions
    // The program found last for each of some places: records of a chunk share few templates.
    struct RecentProgram {
        std::uint32_t Offset = UINT32_MAX;
        Program* Found = nullptr;
    };
    std::array<RecentProgram, 64> recent_;
    // What definitions may still cost, in bytes read and made: a damaged chunk can refer to as many overlapping ones as
    // it has records, a sound one has each of its bytes in at most one.
    std::size_t allowance_ = std::size_t{4} << 20;
};

}  // namespace corvina::evtx
