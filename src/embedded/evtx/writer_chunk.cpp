#include "embedded/evtx/writer_chunk.h"

#include <zlib.h>

#include "base/utf.h"
#include "embedded/evtx/log_file.h"
#include "embedded/evtx/writer_templates.h"
#include "embedded/evtx/writer_values.h"

namespace corvina::evtx {
namespace {

constexpr std::size_t ChunkHeadSize = 512;
constexpr std::size_t HeaderSize = 128;
constexpr std::size_t StringTableOffset = 128;
constexpr std::size_t TemplateTableOffset = 384;
constexpr std::size_t RecordAlignment = 8;
constexpr std::uint32_t RecordSignature = 0x2A2A;

std::uint32_t Checksum(uLong seed, std::string_view bytes) {
    return static_cast<std::uint32_t>(
        crc32(seed, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

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
    return AppendRecord(recordId, event.System.TimeCreated.value_or(0), [&](BinaryXmlWriter& xml) {
        xml.FragmentHeader();
        BeginInstance(xml, PresentSlots(event.System));
        ValueList values(bytes_, static_cast<std::size_t>(SystemSlot::Count));
        AppendSystemValues(values, event.System, recordId);
        if (bytes_.size() > ChunkSize || !WriteData(xml, event.Data)) {
            return false;
        }
        values.End(ValueType::BinaryXml);
        xml.EndOfFragment();
        return true;
    });
}

bool ChunkBuilder::Append(const RecordCopy& record, std::uint64_t recordId) {
    return AppendRecord(recordId, record.WrittenTime,
                        [&](BinaryXmlWriter& xml) { return WriteCopy(xml, record.Content, record.Definitions); });
}

template <typename ContentWriter>
bool ChunkBuilder::AppendRecord(std::uint64_t recordId, std::uint64_t writtenTime, ContentWriter writeContent) {
    const std::size_t begin = bytes_.size();
    const ChunkTables tables = tables_;
    newTemplates_.clear();
    BeginRecord(recordId, writtenTime);
    BinaryXmlWriter xml(bytes_, tables_);
    if (!writeContent(xml) || !EndRecord(begin)) {
        bytes_.resize(begin);
        tables_ = tables;
        for (const std::string& key : newTemplates_) {
            templates_.erase(key);
        }
        return false;
    }
    firstRecordId_ = recordCount_ == 0 ? recordId : firstRecordId_;
    lastRecordId_ = recordId;
    lastRecordOffset_ = begin;
    ++recordCount_;
    return true;
}

void ChunkBuilder::BeginRecord(std::uint64_t recordId, std::uint64_t writtenTime) {
    AppendInteger(bytes_, RecordSignature, 4);
    AppendInteger(bytes_, 0, 4);
    AppendInteger(bytes_, recordId, 8);
    AppendInteger(bytes_, writtenTime, 8);
}

// Completes the record at `begin`; false when the chunk is too small for it.
bool ChunkBuilder::EndRecord(std::size_t begin) {
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

bool ChunkBuilder::WriteCopy(BinaryXmlWriter& xml, std::string_view content, const TemplateCopies& definitions) {
    std::vector<std::size_t> lengths;
    std::vector<ValueList> values;
    PortableReader reader(content);
    PortablePiece piece;
    while (reader.Next(piece)) {
        switch (piece.Kind) {
            case PortableKind::Bytes:
                bytes_.append(piece.Bytes);
                break;
            case PortableKind::Name:
                xml.Name(piece.Bytes);
                break;
            case PortableKind::BeginLength:
                lengths.push_back(xml.BeginLength());
                break;
            case PortableKind::EndLength:
                xml.EndLength(lengths.back());
                lengths.pop_back();
                break;
            case PortableKind::Template:
                if (!WriteDefinition(xml, *definitions[piece.Number])) {
                    return false;
                }
                break;
            case PortableKind::BeginValues:
                values.emplace_back(bytes_, piece.Number);
                break;
            case PortableKind::EndValue:
                values.back().End(static_cast<ValueType>(piece.Number));
                break;
            case PortableKind::EndValues:
                values.pop_back();
                break;
        }
        if (bytes_.size() > ChunkSize) {
            return false;
        }
    }
    return true;
}

// The front of an instance of a definition: found again by its identifier and all that is in it, since damaged and
// forged logs have different definitions under the same identifier.
bool ChunkBuilder::WriteDefinition(BinaryXmlWriter& xml, const TemplateCopy& definition) {
    key_.assign(1, 'C');
    key_.append(reinterpret_cast<const char*>(definition.Identifier.data()), definition.Identifier.size());
    key_.append(definition.Content);
    const std::uint32_t stored = StoredTemplate();
    const std::uint32_t place = xml.Instance(definition.Identifier, stored);
    if (stored != 0) {
        return true;
    }
    RememberTemplate(place);
    if (!WriteCopy(xml, definition.Content, {})) {
        return false;
    }
    xml.EndDefinition(place);
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
