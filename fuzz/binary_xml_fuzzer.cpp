// Feeds arbitrary bytes to the readers of binary XML, as the content of the only record of a chunk. Whatever they are,
// all readers must agree on whether they make up an event, and filters must answer the same from the System values and
// from the whole event.
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "base/utf.h"
#include "embedded/evtx/event_tree.h"
#include "embedded/record_values.h"
#include "embedded/xpath/filter.h"
#include "event_memory.h"

namespace {

using namespace corvina;
using namespace corvina::evtx;

constexpr std::uint64_t Now = 133541208000000000;

// Ends the program, which the fuzzer reports, when a promise of a reader does not hold.
void Require(bool promise) {
    if (!promise) {
        std::abort();
    }
}

std::vector<std::unique_ptr<const xpath::Filter>> MakeFilters() {
    std::vector<std::unique_ptr<const xpath::Filter>> filters;
    for (const wchar_t* text :
         {L"*[System[EventID>=0 and Level!=3]]", L"*[System[EventID=1 or Qualifiers=1 or EventID/@Qualifiers=0]]",
          L"Event/System[Provider[@Name!='x'] or Provider[@Name='']]", L"*[System[band(Keywords,-1) or Computer<5]]",
          L"Event[System/TimeCreated[timediff(@SystemTime)>=0 or @SystemTime>'2000-01-01T00:00:00Z']]",
          L"*[System[Security[@UserID!='S-1-1-0'] or "
          L"Correlation[@ActivityID!='{00000000-0000-0000-0000-000000000000}']]]",
          L"*[System[EventRecordID=1]] or *[System[Channel='a' and Task<3 and Opcode=0 and Version!=9]]",
          L"*[*[*[@*>=0 or text()!='' or position()=2]]]"}) {
        filters.push_back(xpath::Filter::Parse(text, Now));
        Require(filters.back() != nullptr);
    }
    return filters;
}

// A record that cannot be rendered is refused, and one that can is read by every reader.
void ReadAll(const Chunk& chunk, const RecordPlace& record) {
    static const auto filters = MakeFilters();
    SystemValues system;
    std::vector<DataValue> data;
    RenderingInfo info;
    EventTree tree;
    std::string utf8;
    std::wstring wide;
    const bool sound = chunk.IsSound(record);
    Require(chunk.AppendXml(record, utf8) == sound);
    Require(chunk.AppendXml(record, wide) == sound);
    Require(Utf8FromWide(wide) == utf8);
    const bool systemRead = chunk.ReadSystem(record, system);
    const bool dataRead = chunk.ReadData(record, data);
    const bool treeRead = chunk.ReadTree(record, tree);
    chunk.ReadRenderingInfo(record, info);
    if (!sound) {
        return;
    }
    Require(systemRead && dataRead && treeRead);
    for (const auto& filter : filters) {
        embedded::RecordMemory memory;
        embedded::RecordValues values(chunk, record, memory);
        Require(filter->Matches(values) == filter->MatchesTree(tree));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Chunk chunk(fuzz::ChunkAround(std::as_bytes(std::span(data, size))));
    for (const RecordPlace& record : chunk.Places()) {
        ReadAll(chunk, record);
    }
    return 0;
}
