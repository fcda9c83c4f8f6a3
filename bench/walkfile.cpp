// Walks through waveform files, for bench/compare_diff: change by change in the order of time, each value looked at.
//   bench_walkfile FILE...
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include "waveform/files/filekinds.h"
#include "waveform/files/filewalk.h"

namespace {

// What no walk can leave out.
struct SSum {
    long long changes = 0;
    std::uint64_t values = 0;
};

void Add(const tesk::CFileWalk &walk, SSum &sum)
{
    ++sum.changes;
    const auto positions = walk.GetPositions();
    for (const std::uint8_t position : positions)
        sum.values += position;
    if (positions.empty())
        sum.values += walk.GetValues().front().value_or(0);
}

void Walk(tesk::IWaveformFile &file, SSum &sum)
{
    for (tesk::CFileWalk walk(file, file.GetSignals()); walk.Next();)
        Add(walk, sum);
}

}  // namespace

int main(int argc, char **argv)
{
    SSum sum;
    for (int i = 1; i < argc; ++i) {
        const auto file = tesk::FileKind(tesk::KindOfName(argv[i])).open(argv[i]);
        if (file == nullptr)
            return 1;
        Walk(*file, sum);
    }
    std::printf("%lld changes, checksum %llx\n", sum.changes, static_cast<unsigned long long>(sum.values));
}
