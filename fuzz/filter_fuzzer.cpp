// Reads arbitrary text as a filter. A filter is asked about a few events, and must answer the same from their System
// values and from the whole events; what it says beforehand must hold for them.
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/identifiers.h"
#include "base/utf.h"
#include "embedded/evtx/log_file_writer.h"
#include "embedded/record_values.h"
#include "embedded/xpath/filter.h"

namespace {

using namespace corvina;

constexpr std::uint64_t Now = 133541208000000000;

// Ends the program, which the fuzzer reports, when a promise does not hold.
void Require(bool promise) {
    if (!promise) {
        std::abort();
    }
}

std::vector<evtx::WriterEvent> MakeEvents() {
    using Kind = evtx::WriterValue::Kind;
    const auto sid = ParseSid(L"S-1-5-18").value();
    evtx::WriterEvent full;
    full.System.ProviderName = L"A";
    full.System.ProviderGuid = ParseGuid(L"{00112233-4455-6677-8899-aabbccddeeff}");
    full.System.EventId = 7;
    full.System.Level = 2;
    full.System.Task = 1;
    full.System.Keywords = 0x8000000000000004;
    full.System.TimeCreated = Now - 1;
    full.System.Channel = L"System";
    full.System.Computer = L"A";
    full.System.UserSid.assign(sid.begin(), sid.end());
    full.Data = {
        {L"User", Kind::Text, L"x", 0, {}},           {L"Number", Kind::Int32, {}, static_cast<std::uint64_t>(-5), {}},
        {L"Hex", Kind::HexInt64, {}, UINT64_MAX, {}}, {L"Yes", Kind::Boolean, {}, 1, {}},
        {L"When", Kind::FileTime, {}, Now, {}},       {L"Who", Kind::Sid, {}, 0, full.System.UserSid}};
    evtx::WriterEvent classic;
    classic.System.ProviderName = L"B";
    classic.System.EventId = 7036;
    classic.System.Qualifiers = 16384;
    classic.System.TimeCreated = Now + 1;
    classic.Data = {{L"", Kind::Text, L"0x10", 0, {}}, {L"", Kind::Text, L"running", 0, {}}};
    return {full, classic, {}};
}

// Made once: a chunk of a few events.
std::shared_ptr<const evtx::Chunk> MakeChunk() {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("corvina-filter-fuzzer-" + std::to_string(std::rand()));
    std::filesystem::create_directories(folder);
    const std::filesystem::path path = folder / "events.evtx";
    evtx::LogFileWriter writer(path);
    for (const evtx::WriterEvent& event : MakeEvents()) {
        Require(writer.Add(event) == 0);
    }
    Require(writer.Finish() == 0);
    std::uint32_t error = 0;
    const auto file = evtx::LogFile::Open(path, error);
    Require(file != nullptr);
    auto chunk = file->ReadChunk(0);
    Require(chunk->Records().size() == MakeEvents().size());
    std::filesystem::remove_all(folder);
    return chunk;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto chunk = MakeChunk();
    const std::string_view utf8(reinterpret_cast<const char*>(data), size);
    const auto filter = xpath::Filter::Parse(WideFromUtf8(utf8), Now);
    if (filter == nullptr) {
        return 0;
    }
    for (const evtx::RecordPlace& record : chunk->Records()) {
        embedded::RecordMemory memory;
        embedded::RecordValues values(*chunk, record, memory);
        const bool matches = filter->Matches(values);
        Require(matches || !filter->MatchesEverything());
        Require(!matches || !filter->MatchesNothing());
        Require(!matches || filter->RecordId().value_or(record.RecordId) == record.RecordId);
        evtx::EventTree tree;
        Require(chunk->ReadTree(record, tree));
        Require(filter->MatchesTree(tree) == matches);
    }
    return 0;
}
