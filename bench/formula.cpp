// Plain formulas: making a stimulus, and one step of a walk over it, with its allocations.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>
#include <string>

#include "core/stimulus.h"

namespace {

std::size_t g_allocations = 0;

std::string FormulaOf(long long events)
{
    std::string text;
    for (long long i = 0; i < events; ++i)
        text += (i == 0 ? "" : ", ") + std::to_string(i & 1) + " " + std::to_string(i * 10) + "ns";
    return text + " -r " + std::to_string(events * 10) + "ns";
}

void Create(benchmark::State &state)
{
    const std::string formula = FormulaOf(state.range(0));
    for (auto _ : state)
        IStimulus::Create(formula.c_str(), 0, 1000, nullptr, false, false)->Destroy();
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(formula.size()));
}

// GetNextEventTime and GetValue at each change.
void Step(benchmark::State &state)
{
    IStimulus *stimulus = IStimulus::Create(FormulaOf(state.range(0)).c_str(), 0, 1000, nullptr, false, false);
    SimpleString::CStr value;
    long long time = -1;
    const std::size_t before = g_allocations;
    for (auto _ : state) {
        time = stimulus->GetNextEventTime(time);
        benchmark::DoNotOptimize(stimulus->GetValue(time, value));
    }
    state.counters["allocations/step"] =
        static_cast<double>(g_allocations - before) / static_cast<double>(state.iterations());
    stimulus->Destroy();
}

void WalkFromEndToEnd(benchmark::State &state)
{
    IStimulus *stimulus = IStimulus::Create(
        (FormulaOf(state.range(0)) + " -cancel " + std::to_string(state.range(0) * 10) + "ns").c_str(), 0, 1000,
        nullptr, false, false);
    SimpleString::CStr value;
    for (auto _ : state) {
        for (long long time = stimulus->GetNextEventTime(-1); time != -1; time = stimulus->GetNextEventTime(time))
            benchmark::DoNotOptimize(stimulus->GetValue(time, value));
    }
    stimulus->Destroy();
}

BENCHMARK(Create)->Arg(2)->Arg(20)->Arg(2000)->Arg(200000);
BENCHMARK(Step)->Arg(2)->Arg(20)->Arg(2000)->Arg(200000);
BENCHMARK(WalkFromEndToEnd)->Arg(200000)->Unit(benchmark::kMillisecond);

}  // namespace

[[gnu::noinline]] void *operator new(std::size_t size)
{
    ++g_allocations;
    if (void *memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void *operator new[](std::size_t size)
{
    return operator new(size);
}

[[gnu::noinline]] void operator delete(void *memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete[](void *memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete[](void *memory, std::size_t) noexcept
{
    std::free(memory);
}
