// The values of a template instance as they are written into a chunk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/utf.h"
#include "embedded/evtx/writer_xml.h"

namespace corvina::evtx {

// The values of a template instance: their count, a descriptor for each, then their bytes.
class ValueList {
  public:
    ValueList(std::string& chunk, std::size_t count) : chunk_(chunk) {
        AppendInteger(chunk_, count, 4);
        descriptor_ = chunk_.size();
        chunk_.append(count * DescriptorSize, '\0');
        begin_ = chunk_.size();
    }

    void Null() { End(ValueType::Null); }

    void Integer(ValueType type, std::uint64_t value, std::size_t size) {
        AppendInteger(chunk_, value, size);
        End(type);
    }

    void Text(std::wstring_view text) {
        AppendUtf16Bytes(text, chunk_);
        End(ValueType::Text);
    }

    void Bytes(ValueType type, std::span<const std::byte> bytes) {
        chunk_.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        End(type);
    }

    // Ends the value whose bytes were appended since the last one. A value of 64 KiB or more overflows the chunk, too,
    // so its cut-off size is never seen.
    void End(ValueType type) {
        PutInteger(chunk_, descriptor_, chunk_.size() - begin_, 2);
        PutInteger(chunk_, descriptor_ + 2, static_cast<std::uint8_t>(type), 1);
        descriptor_ += DescriptorSize;
        begin_ = chunk_.size();
    }

  private:
    static constexpr std::size_t DescriptorSize = 4;

    std::string& chunk_;
    std::size_t descriptor_ = 0;
    std::size_t begin_ = 0;
};

}  // namespace corvina::evtx
