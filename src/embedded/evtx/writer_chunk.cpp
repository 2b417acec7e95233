#include "embedded/evtx/writer_chunk.h"

#include <span>
#include <zlib.h>

#include "base/utf.h"
#include "embedded/evtx/log_file.h"
#include "embedded/evtx/writer_templates.h"

namespace corvina::evtx {
namespace {

constexpr std::size_t ChunkHeadSize = 512;
constexpr std::size_t HeaderSize = 128;
constexpr std::size_t StringTableOffset = 128;
constexpr std::size_t TemplateTableOffset = 384;
constexpr std::size_t RecordAlignment = 8;
constexpr std::uint32_t RecordSignature = 0x2A2A;
constexpr std::size_t DescriptorSize = 4;

std::uint32_t Checksum(uLong seed, std::string_view bytes) {
    return static_cast<std::uint32_t>(
        crc32(seed, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

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
    std::string& chunk_;
    std::size_t descriptor_ = 0;
    std::size_t begin_ = 0;
};

// Appends one System value, or a null when it is absent.
class SystemValueList {
  public:
    SystemValueList(ValueList& list) : list_(list) {}

    template <typename Number>
    void Integer(SystemSlot slot, const std::optional<Number>& value) {
        value ? list_.Integer(TypeOf(slot), *value, sizeof(Number)) : list_.Null();
    }

    void Guid(const std::optional<GuidBytes>& value) { value ? list_.Bytes(ValueType::Guid, *value) : list_.Null(); }

    void Text(const std::wstring& value) { value.empty() ? list_.Null() : list_.Text(value); }

    void Sid(const std::vector<std::byte>& value) { value.empty() ? list_.Null() : list_.Bytes(ValueType::Sid, value); }

  private:
    ValueList& list_;
};

// In the order of the slots, all but the last one, which is the data.
void AppendSystemValues(ValueList& list, const SystemValues& values, std::uint64_t recordId) {
    SystemValueList system(list);
    system.Integer(SystemSlot::Level, values.Level);
    system.Integer(SystemSlot::Opcode, values.Opcode);
    system.Integer(SystemSlot::Task, values.Task);
    system.Integer(SystemSlot::EventId, values.EventId);
    system.Integer(SystemSlot::Qualifiers, values.Qualifiers);
    system.Integer(SystemSlot::Keywords, values.Keywords);
    system.Integer(SystemSlot::TimeCreated, values.TimeCreated);
    system.Guid(values.ActivityId);
    system.Integer(SystemSlot::ProcessId, values.ProcessId);
    system.Integer(SystemSlot::ThreadId, values.ThreadId);
    list.Integer(TypeOf(SystemSlot::EventRecordId), recordId, 8);
    system.Integer(SystemSlot::Version, values.Version);
    system.Sid(values.UserSid);
    system.Guid(values.RelatedActivityId);
    system.Text(values.ProviderName);
    system.Guid(values.ProviderGuid);
    system.Text(values.EventSourceName);
    system.Text(values.Channel);
    system.Text(values.Computer);
}

void AppendDataValue(ValueList& list, const WriterValue& value) {
    const ValueType type = TypeOf(value.Type);
    switch (value.Type) {
        case WriterValue::Kind::Text:
            list.Text(value.Text);
            break;
        case WriterValue::Kind::UInt32:
        case WriterValue::Kind::Int32:
        case WriterValue::Kind::HexInt32:
            list.Integer(type, value.Number, 4);
            break;
        case WriterValue::Kind::Boolean:
            list.Integer(type, value.Number != 0 ? 1 : 0, 4);
            break;
        case WriterValue::Kind::UInt64:
        case WriterValue::Kind::HexInt64:
        case WriterValue::Kind::FileTime:
            list.Integer(type, value.Number, 8);
            break;
        case WriterValue::Kind::Guid:
        case WriterValue::Kind::Sid:
        case WriterValue::Kind::Binary:
            list.Bytes(type, value.Bytes);
            break;
    }
}

}  // namespace

void ChunkBuilder::Start(std::uint64_t firstRecordNumber) {
    bytes_.reserve(2 * ChunkSize);
    bytes_.assign(ChunkHeadSize, '\0');
    tables_ = ChunkTables();
    templates_.clear();
    firstRecordNumber_ = firstRecordNumber;
    recordCount_ = 0;
    lastRecordOffset_ = 0;
}

bool ChunkBuilder::Append(const WriterEvent& event, std::uint64_t recordId) {
    const std::size_t mark = bytes_.size();
    const ChunkTables tables = tables_;
    newTemplates_.clear();
    if (!WriteRecord(event, recordId)) {
        bytes_.resize(mark);
        tables_ = tables;
        for (const std::string& key : newTemplates_) {
            templates_.erase(key);
        }
        return false;
    }
    firstRecordId_ = recordCount_ == 0 ? recordId : firstRecordId_;
    lastRecordId_ = recordId;
    lastRecordOffset_ = mark;
    ++recordCount_;
    return true;
}

bool ChunkBuilder::WriteRecord(const WriterEvent& event, std::uint64_t recordId) {
    const std::size_t begin = bytes_.size();
    AppendInteger(bytes_, RecordSignature, 4);
    AppendInteger(bytes_, 0, 4);
    AppendInteger(bytes_, recordId, 8);
    AppendInteger(bytes_, event.System.TimeCreated.value_or(0), 8);

    BinaryXmlWriter xml(bytes_, tables_);
    xml.FragmentHeader();
    BeginInstance(xml, PresentSlots(event.System));
    ValueList values(bytes_, static_cast<std::size_t>(SystemSlot::Count));
    AppendSystemValues(values, event.System, recordId);
    if (bytes_.size() > ChunkSize || !WriteData(xml, event.Data)) {
        return false;
    }
    values.End(ValueType::BinaryXml);
    xml.EndOfFragment();

    const std::size_t unaligned = bytes_.size() + 4 - begin;
    bytes_.append((RecordAlignment - unaligned % RecordAlignment) % RecordAlignment, '\0');
    const std::size_t size = bytes_.size() + 4 - begin;
    AppendInteger(bytes_, size, 4);
    PutInteger(bytes_, begin + 4, size, 4);
    return bytes_.size() <= ChunkSize;
}

void ChunkBuilder::BeginInstance(BinaryXmlWriter& xml, std::uint32_t slots) {
    SystemTemplateKey(slots, key_);
    const std::uint32_t stored = StoredTemplate();
    const std::uint32_t definition = xml.Instance(TemplateIdentifier(key_), stored);
    if (stored == 0) {
        RememberTemplate(definition);
        WriteSystemDefinition(xml, slots);
        xml.EndDefinition(definition);
    }
}

bool ChunkBuilder::WriteData(BinaryXmlWriter& xml, const std::vector<WriterValue>& data) {
    DataTemplateKey(data, key_);
    const std::uint32_t stored = StoredTemplate();
    const std::uint32_t definition = xml.Instance(TemplateIdentifier(key_), stored);
    if (stored == 0) {
        RememberTemplate(definition);
        WriteDataDefinition(xml, data);
        xml.EndDefinition(definition);
    }
    ValueList values(bytes_, data.size());
    for (const WriterValue& value : data) {
        AppendDataValue(values, value);
        if (bytes_.size() > ChunkSize) {
            return false;
        }
    }
    xml.EndOfFragment();
    return true;
}

std::uint32_t ChunkBuilder::StoredTemplate() const {
    const auto stored = templates_.find(key_);
    return stored == templates_.end() ? 0 : stored->second;
}

void ChunkBuilder::RememberTemplate(std::uint32_t definition) {
    templates_.emplace(key_, definition);
    newTemplates_.push_back(key_);
}

std::string_view ChunkBuilder::Seal() {
    const std::size_t freeSpace = bytes_.size();
    const bool empty = recordCount_ == 0;
    bytes_.resize(ChunkSize, '\0');
    bytes_.replace(0, 8, std::string_view("ElfChnk\0", 8));
    // A chunk without records says so by a last record before its first one.
    PutInteger(bytes_, 8, firstRecordNumber_, 8);
    PutInteger(bytes_, 16, empty ? ~std::uint64_t{0} : firstRecordNumber_ + recordCount_ - 1, 8);
    PutInteger(bytes_, 24, empty ? ~std::uint64_t{0} : firstRecordId_, 8);
    PutInteger(bytes_, 32, empty ? ~std::uint64_t{0} : lastRecordId_, 8);
    PutInteger(bytes_, 40, HeaderSize, 4);
    PutInteger(bytes_, 44, lastRecordOffset_, 4);
    PutInteger(bytes_, 48, freeSpace, 4);
    for (std::size_t bucket = 0; bucket < StringBuckets; ++bucket) {
        PutInteger(bytes_, StringTableOffset + 4 * bucket, tables_.Strings[bucket], 4);
    }
    for (std::size_t bucket = 0; bucket < TemplateBuckets; ++bucket) {
        PutInteger(bytes_, TemplateTableOffset + 4 * bucket, tables_.Templates[bucket], 4);
    }
    const std::string_view whole = bytes_;
    PutInteger(bytes_, 52, Checksum(0, whole.substr(ChunkHeadSize, freeSpace - ChunkHeadSize)), 4);
    PutInteger(bytes_, 124, Checksum(Checksum(0, whole.substr(0, 120)), whole.substr(128, ChunkHeadSize - 128)), 4);
    return whole;
}

}  // namespace corvina::evtx
