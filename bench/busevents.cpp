// Bus iteration: the changes of 8, 64 and 1,024 leaves merged by time.

#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "signal/signal.h"
#include "signal/tree/component.h"

namespace {

constexpr long long EventsPerLeaf = 1000;

tesk::TReference<ISignal> NewVector(long long leaves)
{
    const std::string left = std::to_string(leaves - 1);
    const std::string name = "v(" + left + " downto 0)";
    const std::string type =
        "a#" + std::to_string(name.size()) + "#" + name + "1 ricd" + left + " 0 e#9#std_logicc9 UX01ZWLH-";
    ISignal *signal = nullptr;
    CreateSignal(type.c_str(), nullptr, &signal);
    return tesk::TReference<ISignal>(signal);
}

// Each leaf changes 1,000 times; `step` is the mean distance of two changes of one leaf.
void FillLeaves(ISignal &vector, unsigned step)
{
    std::mt19937 random(1);
    ISignal *leaf = nullptr;
    for (unsigned i = 0; vector.GetChildren()->GetAt(i, &leaf) == S_OK; ++i) {
        long long time = 0;
        for (std::uint32_t value = 0; value < EventsPerLeaf; ++value) {
            leaf->GetWave()->AddEvent(time, 0, &value, sizeof value);
            time += 1 + random() % (2 * step);
        }
    }
}

// Arguments: leaves, mean distance of a leaf's changes. A large distance makes most steps change one leaf only.
void WalkBus(benchmark::State &state)
{
    const tesk::TReference<ISignal> vector = NewVector(state.range(0));
    FillLeaves(*vector, static_cast<unsigned>(state.range(1)));
    IBusEventIterator *created = nullptr;
    CreateBusEventIterator(vector.get(), &created);
    const tesk::TReference<IBusEventIterator> iterator(created);
    long long steps = 0;
    for (auto _ : state) {
        for (iterator->Reset(); iterator->Next() == S_OK;)
            ++steps;
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * EventsPerLeaf);  // changes of leaves
    state.counters["bus events/s"] = benchmark::Counter(static_cast<double>(steps), benchmark::Counter::kIsRate);
}

BENCHMARK(WalkBus)
    ->ArgNames({"leaves", "distance"})
    ->ArgsProduct({{8, 64, 1024}, {1, 100}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
