// Signal trees: building them, finding signals in them, saving and loading.
#include <benchmark/benchmark.h>

#include <string>

#include "signal/signal.h"
#include "signal/tree/component.h"
#include "tests/signal/memorystream.h"

namespace {

constexpr const char *StdLogic = "e#9#std_logicc9 UX01ZWLH-";

// As many as the 16-bit count of the stream form allows.
constexpr int SavedSignals = 60000;

std::string ArrayType()
{
    const std::string name = "mem(0 to 1023,63 downto 0)";
    return "a#" + std::to_string(name.size()) + "#" + name + "2 rict0 1023 ricd63 0 " + StdLogic;
}

std::string Name(int number)
{
    return "s" + std::to_string(number);
}

tesk::TReference<ISignalContainer> NewDesign(int signals)
{
    ISignalContainer *container = nullptr;
    CreateSignalContainer(&container, nullptr);
    tesk::TReference<ISignalContainer> design(container);
    for (int i = 0; i < signals; ++i) {
        ISignal *made = nullptr;
        design->CreateStdSignal(1, &made);
        const tesk::TReference<ISignal> signal(made);
        signal->SetName(Name(i).c_str());
        design->Add(signal.get());
    }
    return design;
}

void BuildArray1024x64(benchmark::State &state)
{
    const std::string type = ArrayType();
    for (auto _ : state) {
        ISignal *made = nullptr;
        CreateSignal(type.c_str(), nullptr, &made);
        const tesk::TReference<ISignal> signal(made);
        benchmark::DoNotOptimize(made);
    }
    state.SetItemsProcessed(state.iterations() * 65536);
}
BENCHMARK(BuildArray1024x64)->Unit(benchmark::kMillisecond);

void BuildDesign(benchmark::State &state)
{
    const int signals = static_cast<int>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(NewDesign(signals).get());
    state.SetItemsProcessed(state.iterations() * signals);
}
BENCHMARK(BuildDesign)->Arg(100000)->Unit(benchmark::kMillisecond);

void FindScalars(benchmark::State &state)
{
    const int signals = static_cast<int>(state.range(0));
    const tesk::TReference<ISignalContainer> design = NewDesign(signals);
    std::vector<std::string> names;
    for (int i = 0; i < signals; ++i)
        names.push_back(Name(static_cast<int>(i * 7919LL % signals)));
    for (auto _ : state)
        for (const std::string &name : names) {
            ISignal *signal = nullptr;
            design->Find(name.c_str(), &signal);
            benchmark::DoNotOptimize(signal);
        }
    state.SetItemsProcessed(state.iterations() * signals);
}
BENCHMARK(FindScalars)->Arg(100000)->Unit(benchmark::kMillisecond);

void FindElements(benchmark::State &state)
{
    const tesk::TReference<ISignalContainer> design = NewDesign(0);
    ISignal *made = nullptr;
    CreateSignal(ArrayType().c_str(), nullptr, &made);
    const tesk::TReference<ISignal> memory(made);
    memory->SetName("mem");
    design->Add(memory.get());
    for (auto _ : state)
        for (int row = 0; row < 1024; ++row) {
            ISignal *signal = nullptr;
            design->Find(("mem(" + std::to_string(row) + ",7)").c_str(), &signal);
            benchmark::DoNotOptimize(signal);
        }
    state.SetItemsProcessed(state.iterations() * 1024);
}
BENCHMARK(FindElements)->Unit(benchmark::kMicrosecond);

void Save(benchmark::State &state)
{
    const tesk::TReference<ISignalContainer> design = NewDesign(SavedSignals);
    for (auto _ : state) {
        CMemoryStream stream;
        design->Save(&stream);
        benchmark::DoNotOptimize(stream.bytes.data());
    }
    state.SetItemsProcessed(state.iterations() * SavedSignals);
}
BENCHMARK(Save)->Unit(benchmark::kMillisecond);

void Load(benchmark::State &state)
{
    CMemoryStream stream;
    NewDesign(SavedSignals)->Save(&stream);
    for (auto _ : state) {
        stream.position = 0;
        const tesk::TReference<ISignalContainer> design = NewDesign(0);
        design->Load(&stream, nullptr);
        benchmark::DoNotOptimize(design.get());
    }
    state.SetItemsProcessed(state.iterations() * SavedSignals);
}
BENCHMARK(Load)->Unit(benchmark::kMillisecond);

}  // namespace
