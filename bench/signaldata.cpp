// The table of scalars beside a sorted std::vector of records that does the same, in one run: linking 100,000 signals
// of 8 scalars each, and finding every scalar.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "signaldata/model/counted.h"
#include "signaldata/scalardata.h"
#include "signaldata/signaldata.h"

namespace {

constexpr int Signals = 100000;
constexpr int ScalarsPerSignal = 8;
constexpr int Scalars = Signals * ScalarsPerSignal;

using CSignalPtr = tesk::TReference<tesk::ISignalData>;
using CTablePtr = tesk::TReference<tesk::IScalarDataContainer>;

const std::vector<CSignalPtr> &AllSignals()
{
    static const std::vector<CSignalPtr> signals = [] {
        std::vector<CSignalPtr> made;
        for (int i = 0; i < Signals; ++i) {
            tesk::ISignalData *signal = nullptr;
            tesk::CreateSignalData(&signal);
            made.emplace_back(signal);
            signal->SetHandle(i);
            for (int scalar = 0; scalar < ScalarsPerSignal; ++scalar)
                signal->AddScalar(i * ScalarsPerSignal + scalar);
        }
        return made;
    }();
    return signals;
}

// Every handle once, in an order without pattern.
int Scattered(int i)
{
    return static_cast<int>(i * 393241LL % Scalars);
}

CTablePtr LinkedTable()
{
    tesk::IScalarDataContainer *made = nullptr;
    tesk::CreateScalarDataContainer(&made);
    CTablePtr table(made);
    for (const CSignalPtr &signal : AllSignals())
        table->LinkSignal(signal.get());
    return table;
}

// The same by hand.
struct SRecord {
    int handle;
    unsigned char value[10];
    unsigned valueSize;
    std::vector<int> signals;
};

class CSortedRecords {
public:
    void Link(int scalar, int signal)
    {
        auto place = FirstNotBelow(scalar);
        if (place == m_records.end() || place->handle != scalar)
            place = m_records.insert(place, SRecord{scalar, {}, 0, {}});
        auto &signals = place->signals;
        const auto slot = std::ranges::lower_bound(signals, signal);
        if (slot == signals.end() || *slot != signal)
            signals.insert(slot, signal);
    }

    const SRecord *Find(int scalar)
    {
        const auto place = FirstNotBelow(scalar);
        return place != m_records.end() && place->handle == scalar ? &*place : nullptr;
    }

private:
    std::vector<SRecord>::iterator FirstNotBelow(int scalar)
    {
        return std::ranges::lower_bound(m_records, scalar, {}, &SRecord::handle);
    }

    std::vector<SRecord> m_records;
};

CSortedRecords LinkedRecords()
{
    CSortedRecords records;
    for (const CSignalPtr &signal : AllSignals())
        for (unsigned i = 0; i < signal->GetScalarCount(); ++i)
            records.Link(signal->GetScalar(i), signal->GetHandle());
    return records;
}

void LinkTable(benchmark::State &state)
{
    AllSignals();
    for (auto _ : state)
        benchmark::DoNotOptimize(LinkedTable().get());
    state.SetItemsProcessed(state.iterations() * Scalars);
}
BENCHMARK(LinkTable)->Unit(benchmark::kMillisecond);

void LinkSortedVector(benchmark::State &state)
{
    AllSignals();
    for (auto _ : state) {
        CSortedRecords records = LinkedRecords();
        benchmark::DoNotOptimize(&records);
    }
    state.SetItemsProcessed(state.iterations() * Scalars);
}
BENCHMARK(LinkSortedVector)->Unit(benchmark::kMillisecond);

void FindInTable(benchmark::State &state)
{
    const CTablePtr table = LinkedTable();
    for (auto _ : state)
        for (int i = 0; i < Scalars; ++i)
            benchmark::DoNotOptimize(table->Find(state.range(0) != 0 ? Scattered(i) : i));
    state.SetItemsProcessed(state.iterations() * Scalars);
}
BENCHMARK(FindInTable)->ArgName("scattered")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void FindInSortedVector(benchmark::State &state)
{
    CSortedRecords records = LinkedRecords();
    for (auto _ : state)
        for (int i = 0; i < Scalars; ++i)
            benchmark::DoNotOptimize(records.Find(state.range(0) != 0 ? Scattered(i) : i));
    state.SetItemsProcessed(state.iterations() * Scalars);
}
BENCHMARK(FindInSortedVector)->ArgName("scattered")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
