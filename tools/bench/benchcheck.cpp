#include "tools/bench/benchcheck.h"

#include "tools/bench/benchplayer.h"

namespace tesk {

void CheckBenchStimuli(const SBench &bench, std::vector<SBenchFault> &faults)
{
    const CBenchPlayer unused(bench, {}, faults);
}

}  // namespace tesk
