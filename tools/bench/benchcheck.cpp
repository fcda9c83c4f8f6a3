#include "tools/bench/benchcheck.h"

#include <algorithm>
#include <string>

#include "core/stimulus.h"
#include "tools/commandline.h"
#include "tools/play/formula.h"
#include "tools/play/playedsignal.h"
#include "tools/quote.h"

namespace tesk {

namespace {

bool IsKnownToBeWrong(const SBenchSignal &signal, const std::vector<SBenchFault> &faults)
{
    return std::ranges::any_of(faults, [&](const SBenchFault &fault) {
        return fault.severity == ESeverity::Error && fault.place == signal.place;
    });
}

// @throw CRefusal
void MakeStimuli(const SBench &bench, const SBenchSignal &signal)
{
    const CSimulationRun run;
    if (!signal.description.empty())
        IStimulus::SetupAdditionalInfo(signal.name.c_str(), signal.description.c_str());
    SPlayedSignal played;
    played.description = signal.description;
    if (!played.description.empty())
        DescribeElements(played);
    if (played.elements.empty())
        CreateStimulus(signal.formula, signal.start, bench.resolution);
    else
        SplitFormula(signal.formula, static_cast<long long>(played.elements.size()), played.isBitVector, signal.start,
                     bench.resolution);
}

}  // namespace

void CheckBenchStimuli(const SBench &bench, std::vector<SBenchFault> &faults)
{
    for (const SBenchSignal &signal : bench.signals) {
        if (signal.formula.empty() || IsKnownToBeWrong(signal, faults))
            continue;
        try {
            MakeStimuli(bench, signal);
        } catch (const CRefusal &refusal) {
            faults.push_back({ESeverity::Error, signal.place, "signal " + Quote(signal.name) + ": " + refusal.what()});
        }
    }
    std::ranges::stable_sort(faults, {}, &SBenchFault::place);
}

}  // namespace tesk
