// Waves of events. Beside each measure stand two plain std::vectors in the same run: of {time, value, flags}, and of
// that record with virtual operations, as an event has them.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <random>
#include <vector>

#include "signal/tree/component.h"
#include "signal/wave.h"

namespace {

// Freed memory stays in the process, so that no side pays for fresh pages more often than the other.
const int g_keepsMemory = mallopt(M_MMAP_THRESHOLD, 1 << 30) + mallopt(M_TRIM_THRESHOLD, 1 << 30);

struct SRecord {
    SRecord(long long t, std::uint32_t v, unsigned char f) : time(t), value(v), flags(f) {}

    long long time;
    std::uint32_t value;
    unsigned char flags;
};

struct SVirtualRecord final {
    SVirtualRecord(long long t, std::uint32_t v, unsigned char f) : time(t), value(v), flags(f) {}
    virtual long long GetTime() const { return time; }

    long long time;
    std::uint32_t value;
    unsigned char flags;
};

tesk::TReference<ISignalWave> NewWave()
{
    ISignalWave *wave = nullptr;
    CreateSignalWave(4, &wave);
    return tesk::TReference<ISignalWave>(wave);
}

// Distance in bytes between two neighbouring events.
double BytesPerEvent(ISignalWave &wave)
{
    IEvent *first = nullptr;
    IEvent *second = nullptr;
    wave.FindEvent(0, 0, &first);
    wave.FindEvent(10, 0, &second);
    return static_cast<double>(static_cast<char *>(second->GetValuePtr()) - static_cast<char *>(first->GetValuePtr()));
}

void FillWave(ISignalWave &wave, long long count)
{
    for (long long i = 0; i < count; ++i) {
        const auto value = static_cast<std::uint32_t>(i);
        wave.AddEvent(i * 10, 0, &value, sizeof value);
    }
}

template <typename Record>
void FillVector(std::vector<Record> &records, long long count)
{
    for (long long i = 0; i < count; ++i)
        records.emplace_back(i * 10, static_cast<std::uint32_t>(i), static_cast<unsigned char>(0));
}

// Times from the first event to the last, hits and misses.
std::vector<long long> RandomTimes(long long count)
{
    std::mt19937_64 random(1);
    std::vector<long long> times(1 << 16);
    const auto end = static_cast<std::uint64_t>(count * 10);
    std::ranges::generate(times, [&] { return static_cast<long long>(random() % end); });
    return times;
}

void AppendToWave(benchmark::State &state)
{
    const long long count = state.range(0);
    double bytes = 0;
    for (auto _ : state) {
        const tesk::TReference<ISignalWave> wave = NewWave();
        FillWave(*wave, count);
        bytes = BytesPerEvent(*wave);
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["bytes/event"] = bytes;
}

template <typename Record>
void AppendToVector(benchmark::State &state)
{
    const long long count = state.range(0);
    for (auto _ : state) {
        std::vector<Record> records;
        FillVector(records, count);
        benchmark::DoNotOptimize(records.data());
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["bytes/event"] = sizeof(Record);
}

void FindInWave(benchmark::State &state)
{
    const tesk::TReference<ISignalWave> wave = NewWave();
    FillWave(*wave, state.range(0));
    const std::vector<long long> times = RandomTimes(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        IEvent *event = nullptr;
        wave->FindEvent(times[i++ % times.size()], 3, &event);
        benchmark::DoNotOptimize(event);
    }
    state.SetItemsProcessed(state.iterations());
}

template <typename Record>
void FindInVector(benchmark::State &state)
{
    std::vector<Record> records;
    FillVector(records, state.range(0));
    const std::vector<long long> times = RandomTimes(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        auto record = std::ranges::lower_bound(records, times[i++ % times.size()], {}, &Record::time);
        benchmark::DoNotOptimize(record);
    }
    state.SetItemsProcessed(state.iterations());
}

void WalkWave(benchmark::State &state)
{
    const tesk::TReference<ISignalWave> wave = NewWave();
    FillWave(*wave, state.range(0));
    IEventIterator *created = nullptr;
    wave->CreateEventIterator(&created);
    const tesk::TReference<IEventIterator> iterator(created);
    for (auto _ : state) {
        long long sum = 0;
        IEvent *event = nullptr;
        for (iterator->Reset(); iterator->Next(1, &event, nullptr) == S_OK;)
            sum += event->GetTime();
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The first to run warms up, or it alone would pay for the pages that all then use.
BENCHMARK(AppendToWave)->MinWarmUpTime(0.5)->Arg(1000)->Arg(100000)->Arg(10000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(AppendToVector<SRecord>)->Arg(1000)->Arg(100000)->Arg(10000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(AppendToVector<SVirtualRecord>)->Arg(1000)->Arg(100000)->Arg(10000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(FindInWave)->Arg(1000)->Arg(100000)->Arg(10000000);
BENCHMARK(FindInVector<SRecord>)->Arg(1000)->Arg(100000)->Arg(10000000);
BENCHMARK(FindInVector<SVirtualRecord>)->Arg(1000)->Arg(100000)->Arg(10000000);
BENCHMARK(WalkWave)->Arg(100000);

}  // namespace
