// How fast logs of three sizes become rows, how much memory the rows take, how soon the first page is there, and what a
// click on a header costs. Compare the figures with one another: by themselves they only tell about the machine.
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "app/event_list_sort.h"
#include "bench_program.h"

namespace {

using corvina::Column;
using corvina::SortDirection;
using corvina::VisibleColumns;
using corvina::bench::AllColumns;
using corvina::bench::BenchProgram;
using corvina::bench::DefaultColumns;
using corvina::bench::StoreWithEvents;

std::uint64_t Events(const benchmark::State& state) {
    return static_cast<std::uint64_t>(state.range(0));
}

void Load(benchmark::State& state, const VisibleColumns& columns) {
    BenchProgram program(StoreWithEvents(Events(state)), columns);
    for (auto iteration : state) {
        program.LoadSystemLog();
    }
    const std::size_t rows = program.Rows().Size();
    if (rows != Events(state)) {
        state.SkipWithError("not all events were loaded");
        return;
    }
    const double loaded = static_cast<double>(rows) * static_cast<double>(state.iterations());
    state.counters["rows_per_second"] = benchmark::Counter(loaded, benchmark::Counter::kIsRate);
    state.counters["time_per_row"] =
        benchmark::Counter(loaded, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["bytes_per_row"] = static_cast<double>(program.Rows().MemoryUsed()) / static_cast<double>(rows);
}

void LoadDefaultColumns(benchmark::State& state) {
    Load(state, DefaultColumns());
}

void LoadAllColumns(benchmark::State& state) {
    Load(state, AllColumns());
}

// From the click on a log that has not been opened before to the rows of the first page. The log is opened anew for
// each round; its bytes are in the system's cache.
void FirstPage(benchmark::State& state) {
    const std::filesystem::path store = StoreWithEvents(Events(state));
    std::size_t rows = 0;
    for (auto iteration : state) {
        state.PauseTiming();
        auto program = std::make_unique<BenchProgram>(store, DefaultColumns());
        program->StopAtFirstPage();
        state.ResumeTiming();
        program->LoadSystemLog();
        state.PauseTiming();
        rows = program->Rows().Size();
        program.reset();
        state.ResumeTiming();
    }
    if (rows < 50 || rows > 102) {
        state.SkipWithError("the load did not stop after the first page");
    }
}

void Sort(benchmark::State& state, Column column) {
    BenchProgram program(StoreWithEvents(Events(state)), AllColumns());
    program.LoadSystemLog();
    for (auto iteration : state) {
        benchmark::DoNotOptimize(
            corvina::SortedOrder(program.Rows(), column, SortDirection::Descending, program.Locale()));
    }
    const double sorted = static_cast<double>(program.Rows().Size()) * static_cast<double>(state.iterations());
    state.counters["time_per_row"] =
        benchmark::Counter(sorted, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// A number of each row, and one that is in order already.
void SortEventId(benchmark::State& state) {
    Sort(state, Column::EventId);
}
void SortDate(benchmark::State& state) {
    Sort(state, Column::Date);
}
// A few different texts, and nearly as many texts as rows.
void SortSource(benchmark::State& state) {
    Sort(state, Column::Source);
}
void SortMessage(benchmark::State& state) {
    Sort(state, Column::Message);
}

constexpr std::int64_t Small = 10'000;
constexpr std::int64_t Medium = 100'000;
constexpr std::int64_t Large = 1'000'000;

BENCHMARK(LoadDefaultColumns)->Arg(Small)->Arg(Medium)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadAllColumns)->Arg(Small)->Arg(Medium)->Unit(benchmark::kMillisecond);
BENCHMARK(FirstPage)->Arg(Small)->Arg(Medium)->Arg(Large)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(SortEventId)->Arg(Small)->Arg(Medium)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK(SortDate)->Arg(Small)->Arg(Medium)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK(SortSource)->Arg(Small)->Arg(Medium)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK(SortMessage)->Arg(Small)->Arg(Medium)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
