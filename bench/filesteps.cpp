// Steps of the stimuli that replay a file, at the start, in the middle and at the end of a signal of 10^6 changes. A step
// is a binary search: the three places cost alike, and as much as those of a short signal beside them.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "core/stimulus.h"
#include "platform/kestrin.h"
#include "platform/morvel.h"
#include "platform/tarn.h"
#include "waveform/openfiles.h"
#include "waveform/wavestore.h"

namespace {

constexpr const char *StdLogic = "e#9#std_logicc9 UX01ZWLH-";
constexpr long long TicksPerChange = 10;

std::uint32_t ValueOf(long long change)
{
    return 2 + static_cast<std::uint32_t>(change & 1);
}

// A database in memory with one signal.
class CReader final : public NTARN::IDatabaseReader {
public:
    explicit CReader(long long count)
    {
        for (long long i = 0; i < count; ++i)
            m_events.push_back({i * TicksPerChange, ValueOf(i), 0});
    }
    long long GetEndTime() override { return m_events.back().time + TicksPerChange; }
    long long GetResolution() override { return 1000; }
    const int *RootHandlesBegin() override { return &m_handle; }
    const int *RootHandlesEnd() override { return &m_handle + 1; }
    NTARN::HSignalRange GetChildRange(int) override { return {}; }
    std::string GetName(int) override { return "s"; }
    const Kestrin::KTypeInfo &GetType(int) override { return m_type; }
    NTARN::KEventIterator EventsFrom(int, long long time) override
    {
        const auto first = std::ranges::lower_bound(m_events, time, {}, &NTARN::SFileEvent::time);
        return {m_events.data(), m_events.size(), static_cast<std::size_t>(first - m_events.begin())};
    }
    NTARN::KEventIterator EventsEnd(int) override { return {m_events.data(), m_events.size(), m_events.size()}; }
    int GetMode(int) override { return 0; }
    std::string GetFullName(int, bool) override { return "s"; }
    long long GetSignalEndTime(int) override { return GetEndTime(); }

private:
    int m_handle = 0;
    Kestrin::KTypeInfo m_type{StdLogic};
    std::vector<NTARN::SFileEvent> m_events;
};

WaveStore *NewStore(long long count)
{
    WaveStore *store = new WaveStore;
    const long long handle = 1;
    const long long resolution = 1000;
    const long long end = count * TicksPerChange;
    store->addSignal("s", StdLogic, 0, 0, 0, 0, 0);
    store->addHandle(&handle, 0);
    store->endSignal();
    for (long long i = 0; i < count; ++i) {
        const WaveEvent event{i * TicksPerChange, ValueOf(i), 0};
        store->addEvent(&handle, &event);
    }
    store->setResolution(&resolution);
    store->setEndTime(&end);
    return store;
}

void WriteStream(const std::string &file, long long count)
{
    const Morvel::StreamWritePtr writer(Morvel::CreateStreamWrite(file.c_str(), 1000));
    const int signal = writer->AddSignal(-1, "s", StdLogic);
    for (long long i = 0; i < count; ++i) {
        const unsigned char value = static_cast<unsigned char>(ValueOf(i));
        writer->AddEvent(signal, i * TicksPerChange, &value);
    }
    writer->SetEndTime(count * TicksPerChange);
    writer->Finish();
}

IStimulus *CreateStream(long long count)
{
    const std::string file = "/tmp/tesk-bench-" + std::to_string(getpid()) + ".zyn";
    WriteStream(file, count);
    IStimulus *stimulus = IStimulus::Create(("/custom " + file + ",s").c_str(), 0, 1000, nullptr, false, false);
    std::remove(file.c_str());
    return stimulus;
}

IStimulus *CreateDatabase(long long count)
{
    const std::string file = std::to_string(count) + ".db";
    g_OpenWaveformFiles[file.c_str()].m_reader = new CReader(count);
    return IStimulus::Create(("/custom " + file + ",s").c_str(), 0, 1000, nullptr, false, false);
}

IStimulus *CreateVcd(long long count)
{
    const std::string file = std::to_string(count) + ".vcd";
    g_OpenWaveformFiles[file.c_str()].m_reader = NewStore(count);
    return IStimulus::Create(("/custom " + file + ",s").c_str(), 0, 1000, nullptr, false, false);
}

// Made once for each number of changes, and kept.
template <IStimulus *create(long long)>
IStimulus &StimulusOf(long long count)
{
    static IStimulus *const few = create(100);
    static IStimulus *const many = create(1000000);
    return count == 100 ? *few : *many;
}

// Walks over 40 changes at a place, told in percent of the signal.
template <IStimulus *create(long long)>
void Step(benchmark::State &state)
{
    const long long count = state.range(0);
    IStimulus &stimulus = StimulusOf<create>(count);
    const long long first = std::min(count * state.range(1) / 100, count - 41) * TicksPerChange;
    long long time = first;
    SimpleString::CStr value;
    for (auto _ : state) {
        time = time < first + 40 * TicksPerChange ? stimulus.GetNextEventTime(time) : first;
        benchmark::DoNotOptimize(stimulus.GetValue(time, value));
    }
}

void Places(benchmark::internal::Benchmark *bench)
{
    bench->ArgNames({"changes", "percent"});
    bench->Args({100, 50})->Args({1000000, 0})->Args({1000000, 50})->Args({1000000, 100});
}

BENCHMARK(Step<CreateStream>)->Apply(Places);
BENCHMARK(Step<CreateDatabase>)->Apply(Places);
BENCHMARK(Step<CreateVcd>)->Apply(Places);

}  // namespace
