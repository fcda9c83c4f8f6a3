// Opening an FST file, and loading one signal of it that changes a million times.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "platform/log.h"
#include "platform/tarn.h"
#include "tests/platform/fst/fstmaker.h"

namespace {

using namespace fsttest;

constexpr int Changes = 1'000'000;
constexpr int Blocks = 4;

// A clock, a bus of eight bits that counts, and a hundred signals that change now and then.
CBytes MakeFile(char packer)
{
    CFstMaker maker;
    maker.packer = packer;
    maker.end = Changes;
    maker.Scope("top").Variable(maker.Wire, "clk", 1).Variable(maker.Reg, "count [7:0]", 8);
    for (int i = 0; i < 100; ++i)
        maker.Variable(maker.Wire, "other" + std::to_string(i), 1);
    const int perBlock = Changes / Blocks;
    for (int block = 0; block < Blocks; ++block) {
        std::vector<std::uint64_t> times;
        std::vector<CFstChanges> changes(102);
        for (int i = 0; i < perBlock; ++i) {
            const int step = block * perBlock + i;
            const auto index = static_cast<std::uint64_t>(i);
            times.push_back(static_cast<std::uint64_t>(step));
            changes[0].emplace_back(index, step % 2 == 0 ? "0" : "1");
            std::string count;
            for (int bit = 7; bit >= 0; --bit)
                count += step >> bit & 1 ? '1' : '0';
            changes[1].emplace_back(index, count);
            if (i % 100 == 0)
                changes[static_cast<std::size_t>(2 + step / 100 % 100)].emplace_back(index,
                                                                                     step % 200 == 0 ? "0" : "1");
        }
        maker.Block(times[0], times, std::string(109, 'x'), changes);
    }
    return maker.Bytes();
}

// The file, which stays for all measures.
class CBenchFile {
public:
    explicit CBenchFile(char packer) { WriteBytes(Path(), MakeFile(packer)); }

    std::string Path() const { return m_folder / "bench.fst"; }

private:
    CTemporaryFolder m_folder;
};

const std::string &FileOf(char packer)
{
    static const CBenchFile zlib('Z');
    static const CBenchFile lz4('4');
    static const std::string paths[] = {zlib.Path(), lz4.Path()};
    return paths[packer == 'Z' ? 0 : 1];
}

void OpenFile(benchmark::State &state)
{
    const std::string &path = FileOf('Z');
    for (auto _ : state) {
        const ReaderPtr reader(NTARN::IDatabaseReader::create(path.c_str(), false));
        benchmark::DoNotOptimize(reader->GetEndTime());
    }
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(path));
}

// Handle 1 is the clock, 103 the highest bit of the bus.
void OpenAndLoad(benchmark::State &state, char packer, int handle)
{
    const std::string &path = FileOf(packer);
    for (auto _ : state) {
        const ReaderPtr reader(NTARN::IDatabaseReader::create(path.c_str(), false));
        benchmark::DoNotOptimize(*reader->EventsFrom(handle, 0));
    }
    state.SetItemsProcessed(state.iterations() * Changes);
}

void LookUp(benchmark::State &state)
{
    const ReaderPtr reader(NTARN::IDatabaseReader::create(FileOf('Z').c_str(), false));
    long long time = 0;
    for (auto _ : state) {
        time = (time + 700'001) % Changes;
        benchmark::DoNotOptimize(*reader->EventsFrom(1, time));
    }
}

BENCHMARK(OpenFile)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(OpenAndLoad, BitOfZlib, 'Z', 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(OpenAndLoad, BitOfLz4, '4', 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(OpenAndLoad, BusOfLz4, '4', 103)->Unit(benchmark::kMillisecond);
BENCHMARK(LookUp);

}  // namespace
