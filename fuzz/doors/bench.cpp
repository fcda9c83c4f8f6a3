// Any text as a bench file: read, checked, and its first ticks played.
#include <string>
#include <vector>

#include "fuzz/doors.h"
#include "fuzz/support/formulas.h"
#include "fuzz/support/inputfile.h"
#include "fuzz/support/waveforms.h"
#include "tools/bench/bench.h"
#include "tools/bench/benchplayer.h"
#include "tools/commandline.h"

namespace fuzz {

namespace {

constexpr long long MostTicks = 1000;

void Play(const tesk::SBench &bench, std::vector<tesk::SBenchFault> &faults)
try {
    tesk::CBenchPlayer player(bench, {0, MostTicks}, faults);
    if (player.CanPlay())
        player.Play();
} catch (const CRefusal &) {
}

}  // namespace

void Bench(std::string_view input)
{
    if (!StaysHere(std::string(input)))
        return;
    PutWaveforms();
    WriteInput("input.toml", input);
    std::vector<tesk::SBenchFault> faults;
    const tesk::SBench bench = tesk::ReadBench("input.toml", faults);
    Play(bench, faults);
    for (const tesk::SBenchFault &fault : faults)
        tesk::FaultLine(bench, fault);
}

}  // namespace fuzz
