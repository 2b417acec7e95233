// Feeds arbitrary bytes to the reader of event log files and reads everything there is in them. Bytes that begin like a
// log file are one; all others become the content of the only record of a chunk, so that short inputs reach the binary
// XML.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/utf.h"
#include "embedded/evtx/log_file.h"
#include "event_memory.h"

namespace {

using namespace corvina;
using namespace corvina::evtx;

class MemoryFile : public RandomAccessFile {
  public:
    explicit MemoryFile(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {}

    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const override {
        if (offset >= bytes_.size()) {
            return 0;
        }
        const std::size_t count = std::min(buffer.size(), bytes_.size() - static_cast<std::size_t>(offset));
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), count, buffer.begin());
        return count;
    }

    std::uint64_t Size() const override { return bytes_.size(); }

  private:
    std::vector<std::byte> bytes_;
};

// Ends the program, which the fuzzer reports, when a promise of the reader does not hold.
void Require(bool promise) {
    if (!promise) {
        std::abort();
    }
}

void ReadAll(const Chunk& chunk) {
    SystemValues system;
    std::vector<DataValue> data;
    RenderingInfo info;
    chunk.Damage();
    for (const RecordPlace& record : chunk.Records()) {
        std::string utf8;
        std::wstring wide;
        Require(chunk.AppendXml(record, utf8));
        Require(chunk.AppendXml(record, wide));
        Require(Utf8FromWide(wide) == utf8);
        Require(chunk.ReadSystem(record, system));
        chunk.ReadData(record, data);
        chunk.ReadRenderingInfo(record, info);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    if (size < 8 || std::memcmp(data, "ElfFile", 8) != 0) {
        ReadAll(Chunk(fuzz::ChunkAround(bytes)));
        return 0;
    }
    std::uint32_t error = 0;
    const auto file = LogFile::Open(std::make_unique<MemoryFile>(std::vector(bytes.begin(), bytes.end())), error);
    if (file != nullptr) {
        for (std::size_t index = 0; index < file->Chunks().size(); ++index) {
            ReadAll(*file->ReadChunk(index));
        }
    }
    return 0;
}
