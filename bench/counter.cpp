// Steps of a counter, seen by one wire and by a whole vector.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "core/stimulus.h"
#include "settings/counter.h"

namespace {

// It starts with the highest bit as the odd one: every word of the counter takes part, and every sequence has it.
std::vector<IStimulus *> MakeWires(int length, int type, int reverse)
{
    constexpr const char *Formula = "\\counter\\TYPE\\%d\\DIR\\1\\RADIX\\2\\START\\%s\\INC\\1\\PERIOD\\1ns\\REV\\%d";
    const bool isCircularZero = type == 5;
    std::string start(static_cast<std::size_t>(length), isCircularZero ? '1' : '0');
    start[0] = isCircularZero ? '0' : '1';
    SimpleString::CStr formula;
    formula.Format(Formula, type, start.c_str(), reverse);
    std::vector<SimpleString::CStr> formulas;
    CCounterFormulaParser::Run(formula, formulas, length, 1000);
    std::vector<IStimulus *> wires;
    for (const SimpleString::CStr &wire : formulas)
        wires.push_back(IStimulus::Create(wire, 0, 1000, nullptr, false, false));
    return wires;
}

// Width, counting sequence, whether mirrored. `wires` are those that a step is seen by.
void Walk(benchmark::State &state, bool isWhole)
{
    const std::vector<IStimulus *> all =
        MakeWires(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), static_cast<int>(state.range(2)));
    const std::vector<IStimulus *> asked(all.begin(), isWhole ? all.end() : all.begin() + 1);
    SimpleString::CStr value;
    long long time = 0;
    for (auto _ : state) {
        long long next = 0;
        for (IStimulus *wire : asked)
            next = wire->GetNextEventTime(time);
        time = next;
        for (IStimulus *wire : asked) {
            wire->GetValue(time, value);
            benchmark::DoNotOptimize(value);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(asked.size()));
    for (IStimulus *wire : all)
        wire->Destroy();
}

void BM_StepOneWire(benchmark::State &state)
{
    Walk(state, false);
}
BENCHMARK(BM_StepOneWire)
    ->ArgNames({"width", "type", "mirrored"})
    ->ArgsProduct({{8, 64, 1024}, {1, 2, 3, 4, 5}, {0}})
    ->ArgsProduct({{8, 64, 1024}, {1}, {1}})
    ->Args({1000000, 1, 0});

void BM_StepVector(benchmark::State &state)
{
    Walk(state, true);
}
BENCHMARK(BM_StepVector)->ArgNames({"width", "type", "mirrored"})->ArgsProduct({{8, 64, 1024}, {1}, {0}});

}  // namespace
