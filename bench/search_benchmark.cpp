// How fast the texts of events are searched: the messages of 100,000 events, for a text, a wildcard and expressions,
// and one long text for the kind of expression that costs most.
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bench_program.h"
#include "search/text_matcher.h"
#include "search/tsm_regex_match.h"

namespace {

using corvina::Column;
using corvina::TextMatcher;
using corvina::TextMatchOptions;

constexpr std::uint64_t Events = 100'000;

std::vector<std::wstring> LoadMessages() {
    corvina::VisibleColumns columns;
    columns.set(static_cast<std::size_t>(Column::Message));
    corvina::bench::BenchProgram program(corvina::bench::StoreWithEvents(Events), columns);
    program.LoadSystemLog();
    std::vector<std::wstring> messages;
    for (std::size_t row = 0; row < program.Rows().Size(); ++row) {
        messages.emplace_back(program.Rows().CellText(row, 0));
    }
    return messages;
}

const std::vector<std::wstring>& Messages() {
    static const std::vector<std::wstring> messages = LoadMessages();
    return messages;
}

void Search(benchmark::State& state, std::wstring_view search, const TextMatchOptions& options) {
    TextMatcher matcher;
    matcher.SetOptions(options);
    std::size_t found = 0;
    for (auto iteration : state) {
        found = 0;
        for (const std::wstring& message : Messages()) {
            found += matcher.Matches(message, search) ? 1 : 0;
        }
    }
    if (Messages().size() != Events || found == 0 || found == Events) {
        state.SkipWithError("some of the messages should be found");
        return;
    }
    state.counters["found"] = static_cast<double>(found);
    state.counters["time_per_message"] =
        benchmark::Counter(static_cast<double>(Events) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Time per character of "a*a*a*a*a*b" over nothing but a's.
void LongRunOfOneLetter(benchmark::State& state) {
    const std::string text(static_cast<std::size_t>(state.range(0)), 'a');
    for (auto iteration : state) {
        if (corvina::tsm_regex_match("a*a*a*a*a*b", text.c_str()) != corvina::RegexDoesNotOccur) {
            state.SkipWithError("there is no b");
            return;
        }
    }
    state.counters["time_per_character"] =
        benchmark::Counter(static_cast<double>(text.size()) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

constexpr TextMatchOptions Expression = {.MatchCase = true, .UseRegularExpression = true};

BENCHMARK_CAPTURE(Search, Text, L"print spooler", TextMatchOptions{})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, TextMatchCase, L"Print Spooler", TextMatchOptions{.MatchCase = true})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, Wildcard, L"*spooler*stopped*", TextMatchOptions{.UseWildcard = true})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, ExpressionText, L"Print Spooler", Expression)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, ExpressionAddress, L"\\d{1,3}\\.\\d{1,3}\\.\\d{1,3}\\.\\d{1,3}", Expression)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, ExpressionAlternatives, L"bad block|could not|^No .* in", Expression)
    ->Unit(benchmark::kMillisecond);

BENCHMARK(LongRunOfOneLetter)->Arg(1000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
