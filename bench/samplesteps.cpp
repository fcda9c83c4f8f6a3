// A step of a stimulus that plays imported samples: the time of the next change, then the value there.
#include <benchmark/benchmark.h>

#include <cstring>

#include "platform/crt.h"
#include "waveform/samplestimulus.h"

namespace {

CSampleColumn *NewColumn(long long count)
{
    CSampleColumn *column = new CSampleColumn;
    for (long long i = 0; i < count; ++i) {
        SampleEvent event;
        event.m_time = i * 10;
        event.m_text = _strdup(i % 2 == 0 ? "1010" : "101");
        column->m_events.push_back(event);
    }
    return column;
}

// `from` is the place of the steps among the samples, in tenths.
void BM_SampleStep(benchmark::State &state)
{
    constexpr long long Count = 1000000, Steps = 1000;
    g_SampleColumns[1] = NewColumn(Count);
    CCMStimulus *stimulus = new CCMStimulus(1, 2);
    SimpleString::CStr value;
    const long long first = (Count - Steps) / 10 * state.range(0);
    for (auto _ : state) {
        long long time = first * 10;
        for (long long i = 0; i < Steps; ++i) {
            time = stimulus->GetNextEventTime(time - 1);
            stimulus->GetValue(time++, value);
            benchmark::DoNotOptimize(value);
        }
    }
    state.SetItemsProcessed(state.iterations() * Steps);
    stimulus->Destroy();
}
BENCHMARK(BM_SampleStep)->Arg(0)->Arg(5)->Arg(10);

}  // namespace
