#include <algorithm>
#include <new>
#include <optional>
#include <zlib.h>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/chunk_header.h"
#include "embedded/evtx/data_reader.h"
#include "embedded/evtx/event_tree.h"
#include "embedded/evtx/event_tree_reader.h"
#include "embedded/evtx/log_file.h"
#include "embedded/evtx/program_runner.h"
#include "embedded/evtx/record_copy.h"
#include "embedded/evtx/record_walk.h"
#include "embedded/evtx/system_reader.h"
#include "embedded/evtx/template_store.h"
#include "embedded/evtx/value_text.h"
#include "embedded/evtx/xml_text.h"

namespace corvina::evtx {
namespace {

constexpr std::size_t RecordsChecksumField = 52;
constexpr std::int64_t CostOfAnyRecord = 64 * 1024;  // for the fixed text of its template
constexpr std::int64_t CostOfRecordByte = 512;

enum class RecordState : std::uint8_t { Unknown, Sound, Unsound };

// What the rendering of a record may cost; the same whatever else was read of its chunk before. Even arrays of single
// bytes, each in an element of its own, cost a sound record a small part of this, and the records of a chunk together
// are bounded by its 64 KiB.
constexpr std::int64_t LargestCost(const RecordPlace& record) {
    return std::min(LargestEvent, CostOfAnyRecord + CostOfRecordByte * record.Size);
}

std::uint32_t Checksum(std::uint32_t start, std::span<const std::byte> bytes) {
    return static_cast<std::uint32_t>(
        crc32(start, reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size())));
}

std::unique_ptr<std::byte[]> CopyOf(std::span<const std::byte> bytes) {
    if (bytes.empty()) {
        return nullptr;
    }
    auto buffer = std::make_unique_for_overwrite<std::byte[]>(ChunkSize);
    std::copy_n(bytes.begin(), std::min(bytes.size(), ChunkSize), buffer.get());
    return buffer;
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
    State(std::unique_ptr<std::byte[]> buffer, std::shared_ptr<KeptTemplates> kept)
        : Buffer(std::move(buffer)),
          Bytes(Buffer.get(), Buffer == nullptr ? 0 : ChunkSize),
          Templates(Bytes, std::move(kept)) {}

    // The binary XML of a record: behind its header, before the copy of its size.
    ByteReader Content(const RecordPlace& record) const {
        return ByteReader(Bytes, record.Offset + RecordHeaderSize, record.Offset + record.Size - RecordSizeCopy);
    }

    // The index of a record in Places. Only places that were handed out are read, so that what was found out about them
    // holds.
    std::optional<std::size_t> IndexOf(const RecordPlace& record) {
        // Readers go from record to record, most of them one after another in either direction.
        for (const std::size_t index : {LastIndex, LastIndex + 1, LastIndex - 1}) {
            if (index < Places.size() && Places[index].Offset == record.Offset && Places[index].Size == record.Size) {
                LastIndex = index;
                return index;
            }
        }
        const auto found =
            std::lower_bound(Places.begin(), Places.end(), record.Offset,
                             [](const RecordPlace& place, std::uint32_t offset) { return place.Offset < offset; });
        if (found == Places.end() || found->Offset != record.Offset || found->Size != record.Size) {
            return std::nullopt;
        }
        LastIndex = static_cast<std::size_t>(found - Places.begin());
        return LastIndex;
    }

    // Only when somebody asks: sound records are read whatever the checksums say.
    void VerifyChecksums() {
        if (!ChecksumsWanted) {
            return;
        }
        ChecksumsWanted = false;
        const std::span<const std::byte> bytes = Bytes;
        const std::uint32_t records = Checksum(0, bytes.subspan(ChunkHeaderSize, UsedEnd - ChunkHeaderSize));
        Damage.HeaderChecksum = ChunkHeaderChecksum(bytes) != StoredHeaderChecksum(bytes);
        Damage.RecordsChecksum = records != LoadUInt32(&bytes[RecordsChecksumField]);
    }

    // Whether the record at an index of Places can be rendered, found out once.
    bool IsSound(std::size_t index) {
        if (Soundness[index] == RecordState::Unknown) {
            const RecordPlace& record = Places[index];
            const bool sound = Read(record, [&](ByteReader content) {
                SoundnessHandler handler;
                return ProgramRunner(Templates, Values, handler, LargestCost(record)).RunEvent(content);
            });
            Soundness[index] = sound ? RecordState::Sound : RecordState::Unsound;
        }
        return Soundness[index] == RecordState::Sound;
    }

    void FindSoundRecords() {
        if (SoundRecordsKnown) {
            return;
        }
        SoundRecordsKnown = true;
        for (std::size_t index = 0; index < Places.size(); ++index) {
            if (IsSound(index)) {
                SoundRecords.push_back(Places[index]);
            }
        }
        Damage.SkippedRecords += static_cast<std::uint32_t>(Places.size() - SoundRecords.size());
    }

    // Hands the content of a record that is known to `reader`. A record that there is no memory for counts as one that
    // cannot be decoded.
    template <typename Reader>
    bool Read(const RecordPlace& record, Reader reader) {
        try {
            return IndexOf(record).has_value() && reader(Content(record));
        } catch (const std::bad_alloc&) {
            return false;
        }
    }

    template <typename Char>
    bool AppendXml(const RecordPlace& record, TextBuffer<Char>& xml) {
        const std::size_t size = xml.Size();
        const bool done = Read(record, [&](ByteReader content) {
            XmlHandler<Char> handler(Bytes, xml);
            return ProgramRunner(Templates, Values, handler, LargestCost(record)).RunEvent(content);
        });
        if (!done) {
            xml.CutTo(size);
        }
        return done;
    }

    template <typename Char>
    bool AppendXml(const RecordPlace& record, TextBuffer<Char>& buffer, std::basic_string<Char>& xml) {
        buffer.Clear();
        if (!AppendXml(record, buffer)) {
            return false;
        }
        xml.append(buffer.View());
        return true;
    }

    std::unique_ptr<std::byte[]> Buffer;
    std::span<const std::byte> Bytes;
    TemplateStore Templates;
    ValueList Values;
    std::vector<RecordPlace> Places;
    std::size_t LastIndex = 0;           // of the place that was looked up last
    std::vector<RecordState> Soundness;  // of each place
    bool SoundRecordsKnown = false;
    std::vector<RecordPlace> SoundRecords;
    ChunkDamage Damage;
    bool ChecksumsWanted = false;
    std::size_t UsedEnd = 0;
    TextBuffer<char> Utf8Buffer;
    TextBuffer<wchar_t> WideBuffer;
    RecordCopier Copier{Bytes};
};

Chunk::Chunk(std::span<const std::byte> bytes, bool verifyChecksums)
    : Chunk(CopyOf(bytes), std::min(bytes.size(), ChunkSize), verifyChecksums, nullptr) {}

Chunk::Chunk(std::unique_ptr<std::byte[]> buffer, std::size_t size, bool verifyChecksums,
             std::shared_ptr<KeptTemplates> kept) {
    // Padding could complete a record that was cut off, so the bytes are walked as they are.
    RecordWalk walk;
    WalkRecords({buffer.get(), size}, walk);
    if (buffer != nullptr) {
        std::fill(buffer.get() + size, buffer.get() + ChunkSize, std::byte{0});
    }
    state_ = std::make_unique<State>(std::move(buffer), std::move(kept));
    state_->Places = std::move(walk.Records);
    state_->Soundness.resize(state_->Places.size(), RecordState::Unknown);
    state_->SoundRecords.reserve(state_->Places.size());
    state_->Damage.SkippedRecords = walk.Damaged;
    state_->Damage.MissingHeader = !walk.HasHeader && !state_->Places.empty();
    state_->ChecksumsWanted = walk.HasHeader && verifyChecksums;
    state_->UsedEnd = walk.UsedEnd;
}

Chunk::~Chunk() = default;

std::span<const RecordPlace> Chunk::Records() const {
    state_->FindSoundRecords();
    return state_->SoundRecords;
}

std::span<const RecordPlace> Chunk::Places() const {
    return state_->Places;
}

bool Chunk::IsSound(const RecordPlace& record) const {
    const std::optional<std::size_t> index = state_->IndexOf(record);
    return index && state_->IsSound(*index);
}

const ChunkDamage& Chunk::Damage() const {
    state_->FindSoundRecords();
    state_->VerifyChecksums();
    return state_->Damage;
}

bool Chunk::ReadSystem(const RecordPlace& record, SystemValues& values) const {
    SystemFieldSet certain;
    return ReadSystem(record, SystemFieldSet::All(), values, certain);
}

bool Chunk::ReadSystem(const RecordPlace& record, SystemFieldSet wanted, SystemValues& values,
                       SystemFieldSet& certain) const {
    return state_->Read(record, [&](ByteReader content) {
        return ReadSystemValues(content, state_->Templates, state_->Values, wanted, values, certain);
    });
}

bool Chunk::ReadTree(const RecordPlace& record, EventTree& tree) const {
    return state_->Read(record, [&](ByteReader content) {
        return ReadEventTree(content, state_->Templates, state_->Values, LargestCost(record), tree);
    });
}

bool Chunk::ReadData(const RecordPlace& record, std::vector<DataValue>& values) const {
    return state_->Read(record, [&](ByteReader content) {
        return ReadDataValues(content, state_->Templates, state_->Values, LargestCost(record), values);
    });
}

bool Chunk::ReadRenderingInfo(const RecordPlace& record, RenderingInfo& info) const {
    return state_->Read(record, [&](ByteReader content) {
        return ReadRenderingTexts(content, state_->Templates, state_->Values, LargestCost(record), info);
    });
}

bool Chunk::AppendXml(const RecordPlace& record, std::wstring& xml) const {
    return state_->AppendXml(record, state_->WideBuffer, xml);
}

bool Chunk::AppendXml(const RecordPlace& record, TextBuffer<char>& utf8) const {
    return state_->AppendXml(record, utf8);
}

bool Chunk::AppendXml(const RecordPlace& record, std::string& utf8) const {
    return state_->AppendXml(record, state_->Utf8Buffer, utf8);
}

bool Chunk::Copy(const RecordPlace& record, RecordCopy& copy) const {
    copy.WrittenTime = record.WrittenTime;
    return state_->Read(record, [&](ByteReader content) { return state_->Copier.Copy(content, copy); });
}

}  // namespace corvina::evtx
