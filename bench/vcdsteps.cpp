// Look-ups in a signal of 10^6 changes, at its beginning, its middle and its end.
#include <benchmark/benchmark.h>

#include "waveform/wavestore.h"

namespace {

constexpr long long Changes = 1000000;
constexpr long long Period = 500;

const WaveStore &Store()
{
    static const WaveStore *const store = [] {
        auto *filled = new WaveStore;
        const long long handle = 1;
        filled->addSignal("clk", "e#9#std_logicc9 UX01ZWLH-", 0, 0, 0, 0, 0);
        filled->addHandle(&handle, 0);
        filled->endSignal();
        for (long long i = 0; i < Changes; ++i) {
            const WaveEvent event{i * Period, static_cast<std::uint64_t>(2 + i % 2), 0};
            filled->addEvent(&handle, &event);
        }
        filled->endEvents();
        return filled;
    }();
    return *store;
}

// The range is the place in the signal in percent.
long long TimeAt(const benchmark::State &state)
{
    return Changes * Period / 100 * state.range(0) - 1;
}

void BM_FindLast(benchmark::State &state)
{
    const WaveStore &store = Store();
    for (auto _ : state)
        benchmark::DoNotOptimize(store.FindLast(1, TimeAt(state)));
}
BENCHMARK(BM_FindLast)->Arg(0)->Arg(50)->Arg(100);

void BM_FindNext(benchmark::State &state)
{
    const WaveStore &store = Store();
    for (auto _ : state)
        benchmark::DoNotOptimize(store.FindNext(1, TimeAt(state)));
}
BENCHMARK(BM_FindNext)->Arg(0)->Arg(50)->Arg(100);

}  // namespace
