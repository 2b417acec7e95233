// Feeds arbitrary bytes to the reader of event log files, reads everything there is in them and copies it into another
// chunk. Bytes that begin like a log file are one; all others become the content of the only record of a chunk, so that
// short inputs reach the binary XML.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/utf.h"
#include "embedded/evtx/log_file.h"
#include "embedded/evtx/writer_chunk.h"
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

// What was kept of other chunks of the file must make no difference.
void RequireSame(const Chunk& chunk, const Chunk& alone) {
    const auto records = chunk.Records();
    Require(records.size() == alone.Records().size());
    for (const RecordPlace& record : records) {
        std::string xml;
        std::string xmlAlone;
        Require(chunk.AppendXml(record, xml) && alone.AppendXml(record, xmlAlone) && xml == xmlAlone);
    }
}

// A chunk with copies of the records of another one, as far as there is room, and the records that were copied.
std::vector<std::byte> CopyOf(const Chunk& chunk, std::vector<RecordPlace>& copied) {
    ChunkBuilder builder;
    RecordCopy copy;
    for (const RecordPlace& record : chunk.Records()) {
        Require(chunk.Copy(record, copy));
        if (builder.Append(copy, copied.size() + 1)) {
            copied.push_back(record);
        }
    }
    const auto bytes = std::as_bytes(std::span(builder.Seal()));
    return {bytes.begin(), bytes.end()};
}

void CopyAll(const Chunk& chunk) {
    std::vector<RecordPlace> sources;
    const std::vector<std::byte> bytes = CopyOf(chunk, sources);
    const Chunk copy(bytes);
    // A record that its definition went along with in the source may be a much smaller one here, and then less of it is
    // rendered.
    std::size_t index = 0;
    for (const RecordPlace& record : copy.Places()) {
        const RecordPlace& source = sources.at(index++);
        std::string before;
        std::string after;
        Require(chunk.AppendXml(source, before));
        Require(copy.AppendXml(record, after) ? before == after : record.Size < source.Size);
    }
    Require(index == sources.size());
    const ChunkDamage& damage = copy.Damage();
    Require(!damage.HeaderChecksum && !damage.RecordsChecksum && !damage.MissingHeader);
    std::vector<RecordPlace> again;
    Require(copy.Records().size() < index || CopyOf(copy, again) == bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    if (size < 8 || std::memcmp(data, "ElfFile", 8) != 0) {
        const Chunk chunk(fuzz::ChunkAround(bytes));
        ReadAll(chunk);
        CopyAll(chunk);
        return 0;
    }
    std::uint32_t error = 0;
    const auto file = LogFile::Open(std::make_unique<MemoryFile>(std::vector(bytes.begin(), bytes.end())), error);
    if (file != nullptr) {
        for (std::size_t index = 0; index < file->Chunks().size(); ++index) {
            const auto chunk = file->ReadChunk(index);
            ReadAll(*chunk);
            CopyAll(*chunk);
            RequireSame(*chunk, Chunk(bytes.subspan(file->Chunks()[index].FileOffset)));
        }
    }
    return 0;
}
