#include "tools/bench/toldbench.h"

#include <algorithm>
#include <cstdio>

#include "tools/commandline.h"

namespace tesk {

bool CannotBeUsed(const std::vector<SBenchFault> &faults)
{
    return std::ranges::any_of(
        faults, [](const SBenchFault &fault) { return fault.severity == ESeverity::Error && !fault.isOfFormula; });
}

SBench ReadToldBench(const std::string &path, bool isStrict, const std::string &use)
{
    std::vector<SBenchFault> faults;
    SBench bench = ReadBench(path, faults);
    for (const SBenchFault &fault : faults)
        std::fprintf(stderr, "tesk: %s\n", FaultLine(bench, fault).c_str());
    const bool isUnread = std::ranges::any_of(
        faults, [](const SBenchFault &fault) { return fault.severity == ESeverity::Error && !fault.isOfFormula; });
    if (isUnread || (isStrict && HasError(faults)))
        throw CRefusal(path + ": the bench is not " + use + "; \"tesk check\" tells its faults as data");
    return bench;
}

}  // namespace tesk
