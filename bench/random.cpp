// Draws of the random stimulator: how many a second of each kind.
#include <benchmark/benchmark.h>

#include "core/stimulus.h"

namespace {

// One item is a draw, asked for as a simulator does: the time of the next change, then the value there.
void BM_Draw(benchmark::State &state, const char *formula)
{
    const tesk::StimulusPtr stimulus(IStimulus::Create(formula, 0, 1000, nullptr, false, false));
    SimpleString::CStr value;
    long long time = 0;
    for (auto _ : state) {
        time = stimulus->GetNextEventTime(time);
        stimulus->GetValue(time, value);
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(BM_Draw, full_range, "\\RANDOM\\8\\5\\1ns");
BENCHMARK_CAPTURE(BM_Draw, uniform, "\\RANDOM\\1\\5\\0\\1000\\1ns");
BENCHMARK_CAPTURE(BM_Draw, normal, "\\RANDOM\\2\\5\\100\\15\\1ns");
BENCHMARK_CAPTURE(BM_Draw, exponential, "\\RANDOM\\3\\5\\100\\1ns");
BENCHMARK_CAPTURE(BM_Draw, poisson, "\\RANDOM\\4\\5\\10\\1ns");
BENCHMARK_CAPTURE(BM_Draw, chi_square, "\\RANDOM\\5\\5\\10\\1ns");
BENCHMARK_CAPTURE(BM_Draw, t, "\\RANDOM\\6\\5\\10\\1ns");
BENCHMARK_CAPTURE(BM_Draw, erlang, "\\RANDOM\\7\\5\\100\\10\\1ns");

// The longest draws that a formula can ask for.
BENCHMARK_CAPTURE(BM_Draw, longest_poisson, "\\RANDOM\\4\\5\\2147483647\\1ns");
BENCHMARK_CAPTURE(BM_Draw, longest_chi_square, "\\RANDOM\\5\\5\\2000000\\1ns");
BENCHMARK_CAPTURE(BM_Draw, longest_erlang, "\\RANDOM\\7\\5\\100\\2147483647\\1ns");

}  // namespace
