#include <algorithm>
#include <new>
#include <zlib.h>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/data_reader.h"
#include "embedded/evtx/log_file.h"
#include "embedded/evtx/program_runner.h"
#include "embedded/evtx/record_walk.h"
#include "embedded/evtx/system_reader.h"
#include "embedded/evtx/template_store.h"
#include "embedded/evtx/value_text.h"
#include "embedded/evtx/xml_text.h"

namespace corvina::evtx {
namespace {

constexpr std::size_t RecordsChecksumField = 52;
constexpr std::size_t HeaderChecksumField = 124;
constexpr std::size_t HeaderFieldsSize = 120;
constexpr std::size_t TablesOffset = 128;
// All events of a chunk together. A sound chunk's records hold less than 64 KiB, which even as arrays of single bytes,
// each in an element of its own, come to a small part of this.
constexpr std::int64_t LargestChunk = 8 * LargestEvent;

std::uint32_t Checksum(std::uint32_t start, std::span<const std::byte> bytes) {
    return static_cast<std::uint32_t>(
        crc32(start, reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size())));
}

// Runs an event for nothing but to see whether it can be run.
struct SoundnessHandler {
    static constexpr bool WantsStructure = false;
    void Literal(std::string_view, bool) {}
    void Substitute(const Value&, bool) {}
};

template <typename Char>
class XmlHandler {
  public:
    static constexpr bool WantsStructure = false;

    XmlHandler(std::span<const std::byte> chunk, TextBuffer<Char>& xml) : chunk_(chunk), xml_(xml) {}

    void Literal(std::string_view utf8, bool ascii) { AppendLiteral(utf8, ascii, xml_); }
    void Substitute(const Value& value, bool inAttribute) {
        AppendValueText(chunk_, value, inAttribute ? Escaping::Attribute : Escaping::Text, xml_);
    }

  private:
    std::span<const std::byte> chunk_;
    TextBuffer<Char>& xml_;
};

}  // namespace

struct Chunk::State {
    explicit State(std::vector<std::byte> bytes) : Bytes(std::move(bytes)), Templates(Bytes) {}

    // The binary XML of a record: behind its header, before the copy of its size.
    ByteReader Content(const RecordPlace& record) const {
        return ByteReader(Bytes, record.Offset + RecordHeaderSize, record.Offset + record.Size - RecordSizeCopy);
    }

    // Only places that were handed out are read, so that what was found out about them holds.
    bool Knows(const RecordPlace& record) const {
        const auto found =
            std::lower_bound(Records.begin(), Records.end(), record.Offset,
                             [](const RecordPlace& place, std::uint32_t offset) { return place.Offset < offset; });
        return found != Records.end() && found->Offset == record.Offset && found->Size == record.Size;
    }

    // Only when somebody asks: sound records are read whatever the checksums say.
    void VerifyChecksums() {
        if (!ChecksumsWanted) {
            return;
        }
        ChecksumsWanted = false;
        const std::span<const std::byte> bytes = Bytes;
        const std::uint32_t fields = Checksum(0, bytes.first(HeaderFieldsSize));
        const std::uint32_t header = Checksum(fields, bytes.subspan(TablesOffset, ChunkHeaderSize - TablesOffset));
        const std::uint32_t records = Checksum(0, bytes.subspan(ChunkHeaderSize, UsedEnd - ChunkHeaderSize));
        Damage.HeaderChecksum = header != LoadUInt32(&bytes[HeaderChecksumField]);
        Damage.RecordsChecksum = records != LoadUInt32(&bytes[RecordsChecksumField]);
    }

    void KeepSoundRecords() {
        std::int64_t budget = LargestChunk;
        const auto unsound = [this, &budget](const RecordPlace& record) {
            SoundnessHandler handler;
            const std::int64_t own = std::min(budget, LargestEvent);
            ProgramRunner runner(Templates, Values, handler, own);
            const bool sound = runner.RunEvent(Content(record));
            budget -= own - std::max<std::int64_t>(runner.Budget(), 0);
            return !sound;
        };
        Damage.SkippedRecords += static_cast<std::uint32_t>(std::erase_if(Records, unsound));
    }

    // Hands the content of a record that is known to `reader`. A record that there is no memory for counts as one that
    // cannot be decoded.
    template <typename Reader>
    bool Read(const RecordPlace& record, Reader reader) const {
        try {
            return Knows(record) && reader(Content(record));
        } catch (const std::bad_alloc&) {
            return false;
        }
    }

    template <typename Char>
    bool AppendXml(ByteReader content, TextBuffer<Char>& buffer, std::basic_string<Char>& xml) {
        buffer.Clear();
        XmlHandler<Char> handler(Bytes, buffer);
        if (!ProgramRunner(Templates, Values, handler, LargestEvent).RunEvent(content)) {
            return false;
        }
        xml.append(buffer.View());
        return true;
    }

    std::vector<std::byte> Bytes;
    TemplateStore Templates;
    std::vector<Value> Values;
    std::vector<RecordPlace> Records;
    ChunkDamage Damage;
    bool ChecksumsWanted = false;
    std::size_t UsedEnd = 0;
    TextBuffer<char> Utf8Buffer;
    TextBuffer<wchar_t> WideBuffer;
};

Chunk::Chunk(std::vector<std::byte> bytes, bool verifyChecksums) {
    // Padding could complete a record that was cut off, so the bytes are walked as they are. A place that could not be
    // read stays empty, which needs no memory.
    RecordWalk walk;
    WalkRecords(bytes, walk);
    bytes.resize(bytes.empty() ? 0 : ChunkSize);
    state_ = std::make_unique<State>(std::move(bytes));
    state_->Records = std::move(walk.Records);
    state_->Damage.SkippedRecords = walk.Damaged;
    state_->Damage.MissingHeader = !walk.HasHeader && !state_->Records.empty();
    state_->ChecksumsWanted = walk.HasHeader && verifyChecksums;
    state_->UsedEnd = walk.UsedEnd;
    state_->KeepSoundRecords();
}

Chunk::~Chunk() = default;

std::span<const RecordPlace> Chunk::Records() const {
    return state_->Records;
}

const ChunkDamage& Chunk::Damage() const {
    state_->VerifyChecksums();
    return state_->Damage;
}

bool Chunk::ReadSystem(const RecordPlace& record, SystemValues& values) const {
    return state_->Read(record, [&](ByteReader content) {
        return ReadSystemValues(content, state_->Templates, state_->Values, values);
    });
}

bool Chunk::ReadData(const RecordPlace& record, std::vector<DataValue>& values) const {
    return state_->Read(
        record, [&](ByteReader content) { return ReadDataValues(content, state_->Templates, state_->Values, values); });
}

bool Chunk::ReadRenderingInfo(const RecordPlace& record, RenderingInfo& info) const {
    return state_->Read(record, [&](ByteReader content) {
        return ReadRenderingTexts(content, state_->Templates, state_->Values, info);
    });
}

bool Chunk::AppendXml(const RecordPlace& record, std::wstring& xml) const {
    return state_->Read(record,
                        [&](ByteReader content) { return state_->AppendXml(content, state_->WideBuffer, xml); });
}

bool Chunk::AppendXml(const RecordPlace& record, std::string& utf8) const {
    return state_->Read(record,
                        [&](ByteReader content) { return state_->AppendXml(content, state_->Utf8Buffer, utf8); });
}

}  // namespace corvina::evtx
