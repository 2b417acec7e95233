// How long a click on a row takes until its event is shown in full. It must not depend on the length of the log, nor on
// where in the log the event stands.
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "bench_program.h"

namespace {

using corvina::bench::BenchProgram;
using corvina::bench::DefaultColumns;
using corvina::bench::ExportWithEvents;
using corvina::bench::StoreWithEvents;

enum class Place { Newest, Middle, Oldest };

// Rows that are looked at in turns, so that not always the same chunk is read.
constexpr std::size_t Rows = 400;

void ShowRows(benchmark::State& state, BenchProgram& program, Place place) {
    const std::size_t count = program.Rows().Size();
    if (count + 1 < static_cast<std::size_t>(state.range(0))) {
        state.SkipWithError("not all events were loaded");
        return;
    }
    const std::size_t first = place == Place::Newest ? 0 : place == Place::Middle ? (count - Rows) / 2 : count - Rows;
    std::size_t turn = 0;
    for (auto iteration : state) {
        const std::size_t row = first + turn++ % Rows;
        const std::wstring id = L">" + std::to_wstring(program.Rows().Row(row).RecordId) + L"</EventRecordID>";
        if (program.ShowDetails(row).find(id) == std::wstring::npos) {
            state.SkipWithError("another event is shown");
        }
    }
}

void Details(benchmark::State& state, Place place) {
    BenchProgram program(StoreWithEvents(static_cast<std::uint64_t>(state.range(0))), DefaultColumns());
    program.LoadSystemLog();
    ShowRows(state, program, place);
}

void DetailsOfExport(benchmark::State& state, Place place) {
    const auto events = static_cast<std::uint64_t>(state.range(0));
    BenchProgram program(StoreWithEvents(1000), DefaultColumns());
    program.LoadSavedLog(ExportWithEvents(events));
    ShowRows(state, program, place);
}

constexpr std::int64_t Small = 1'000;
constexpr std::int64_t Large = 1'000'000;

BENCHMARK_CAPTURE(Details, Newest, Place::Newest)->Arg(Small)->Arg(Large)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Details, Middle, Place::Middle)->Arg(Small)->Arg(Large)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Details, Oldest, Place::Oldest)->Arg(Small)->Arg(Large)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(DetailsOfExport, Newest, Place::Newest)->Arg(Small)->Arg(Large)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(DetailsOfExport, Middle, Place::Middle)->Arg(Small)->Arg(Large)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(DetailsOfExport, Oldest, Place::Oldest)->Arg(Small)->Arg(Large)->Unit(benchmark::kMicrosecond);

}  // namespace
