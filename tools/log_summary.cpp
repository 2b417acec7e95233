#include "log_summary.h"

#include <cstdio>
#include <string_view>
#include <utility>

#include "base/calendar.h"

namespace corvina::tools {
namespace {

constexpr std::uint32_t DirtyFlag = 1;
constexpr std::uint32_t FullFlag = 2;
constexpr std::uint32_t NoChecksumsFlag = 4;

std::string TimeText(std::uint64_t fileTime) {
    const CalendarTime time = CalendarFromFileTime(fileTime);
    char text[80];
    std::snprintf(text, sizeof(text), "%04d-%02u-%02uT%02u:%02u:%02u.%07uZ", time.Year, time.Month, time.Day, time.Hour,
                  time.Minute, time.Second, time.Ticks);
    return text;
}

std::string FlagsText(std::uint32_t flags) {
    char number[16];
    std::snprintf(number, sizeof(number), "0x%X", flags);
    std::string names;
    const auto add = [&names, flags](std::uint32_t flag, std::string_view name) {
        if ((flags & flag) != 0) {
            names.append(names.empty() ? " (" : ", ").append(name);
        }
    };
    add(DirtyFlag, "dirty");
    add(FullFlag, "full");
    add(NoChecksumsFlag, "no checksums");
    return number + (names.empty() ? names : names + ")");
}

class Lines {
  public:
    explicit Lines(const std::string& title) : text_(title + "\n") {}

    void Add(std::string_view label, const std::string& value) {
        constexpr std::size_t ValueColumn = 20;
        std::string line = "  ";
        line.append(label).append(":");
        line.append(line.size() < ValueColumn ? ValueColumn - line.size() : 1, ' ');
        text_ += line + value + "\n";
    }

    // Only what is there.
    void AddDamage(std::uint64_t count, std::string_view what) {
        if (count != 0) {
            Add("damage", std::to_string(count) + " " + std::string(what));
            damaged_ = true;
        }
    }

    std::string Take() {
        if (!damaged_) {
            Add("damage", "none");
        }
        return std::move(text_);
    }

  private:
    std::string text_;
    bool damaged_ = false;
};

}  // namespace

LogSummary Summarize(const evtx::LogFile& file) {
    LogSummary summary;
    summary.FileSize = file.Size();
    summary.Header = file.Header();
    summary.Chunks = file.Chunks().size();
    summary.ForeignChunks = file.ForeignChunks();
    summary.ForeignBytes = file.ForeignBytes();
    for (std::size_t index = 0; index < file.Chunks().size(); ++index) {
        const auto chunk = file.ReadChunk(index);
        const evtx::ChunkDamage& damage = chunk->Damage();
        summary.WrongHeaderChecksums += damage.HeaderChecksum ? 1 : 0;
        summary.WrongRecordChecksums += damage.RecordsChecksum ? 1 : 0;
        summary.MissingHeaders += damage.MissingHeader ? 1 : 0;
        summary.SkippedRecords += damage.SkippedRecords;
        if (chunk->Records().empty()) {
            continue;
        }
        if (summary.Records == 0) {
            summary.FirstRecordId = chunk->Records().front().RecordId;
            summary.FirstWritten = chunk->Records().front().WrittenTime;
        }
        summary.LastRecordId = chunk->Records().back().RecordId;
        summary.LastWritten = chunk->Records().back().WrittenTime;
        summary.Records += chunk->Records().size();
    }
    return summary;
}

std::string SummaryText(const std::string& name, const LogSummary& summary) {
    const evtx::FileHeader& header = summary.Header;
    Lines lines(name);
    lines.Add("size", std::to_string(summary.FileSize) + " bytes");
    lines.Add("format", std::to_string(header.MajorVersion) + "." + std::to_string(header.MinorVersion));
    lines.Add("header flags", FlagsText(header.Flags));
    lines.Add("header counts",
              std::to_string(header.ChunkCount) + " chunks, next record " + std::to_string(header.NextRecordId));
    lines.Add("chunks", std::to_string(summary.Chunks));
    lines.Add("records", std::to_string(summary.Records));
    if (summary.Records != 0) {
        lines.Add("first record", std::to_string(summary.FirstRecordId) + ", " + TimeText(summary.FirstWritten));
        lines.Add("last record", std::to_string(summary.LastRecordId) + ", " + TimeText(summary.LastWritten));
    }
    lines.AddDamage(header.ChecksumValid ? 0 : 1, "wrong checksum of the file's header");
    lines.AddDamage(summary.WrongHeaderChecksums, "wrong checksums of chunk headers");
    lines.AddDamage(summary.WrongRecordChecksums, "wrong checksums of chunk records");
    lines.AddDamage(summary.MissingHeaders, "chunks without a header");
    lines.AddDamage(summary.SkippedRecords, "records skipped");
    lines.AddDamage(summary.ForeignChunks, "places that hold neither a chunk nor zeros");
    lines.AddDamage(summary.ForeignBytes, "bytes after the last whole chunk");
    return lines.Take();
}

}  // namespace corvina::tools
