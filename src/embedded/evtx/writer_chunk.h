// One chunk of a log while it is filled. Names and templates are stored where they are first needed and found again
// through the chunk's own tables, so a chunk is complete in itself.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/evtx/log_file_writer.h"
#include "embedded/evtx/record_copy.h"
#include "embedded/evtx/writer_xml.h"

namespace corvina::evtx {

class ChunkBuilder {
  public:
    ChunkBuilder() { Start(1); }

    // Begins an empty chunk. Record numbers count the records of a file, whatever their identifiers are.
    void Start(std::uint64_t firstRecordNumber);

    // False when the event does not fit into what is left of the chunk, which is then as it was before.
    bool Append(const WriterEvent& event, std::uint64_t recordId);
    bool Append(const RecordCopy& record, std::uint64_t recordId);

    bool IsEmpty() const { return recordCount_ == 0; }

    // The whole chunk, tables and checksums filled in; valid until the next Start.
    std::string_view Seal();

  private:
    template <typename ContentWriter>
    bool AppendRecord(std::uint64_t recordId, std::uint64_t writtenTime, ContentWriter writeContent);
    void BeginRecord(std::uint64_t recordId, std::uint64_t writtenTime);
    bool EndRecord(std::size_t begin);
    void BeginInstance(BinaryXmlWriter& xml, std::uint32_t slots);
    bool WriteData(BinaryXmlWriter& xml, const std::vector<WriterValue>& data);
    bool WriteCopy(BinaryXmlWriter& xml, std::string_view content, const TemplateCopies& definitions);
    bool WriteDefinition(BinaryXmlWriter& xml, const TemplateCopy& definition);
    std::uint32_t StoredTemplate() const;
    void RememberTemplate(std::uint32_t definition);

    std::string bytes_;
    ChunkTables tables_;
    std::unordered_map<std::string, std::uint32_t> templates_;  // by key
    std::vector<std::string> newTemplates_;                     // keys added by the record being written
    std::string key_;
    std::uint64_t firstRecordNumber_ = 1;
    std::uint64_t recordCount_ = 0;
    std::uint64_t firstRecordId_ = 0;
    std::uint64_t lastRecordId_ = 0;
    std::size_t lastRecordOffset_ = 0;
};

}  // namespace corvina::evtx
