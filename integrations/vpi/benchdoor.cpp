#include "integrations/vpi/benchdoor.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "integrations/vpi/design.h"
#include "integrations/vpi/replay.h"
#include "integrations/vpi/session.h"
#include "integrations/vpi/simulator.h"
#include "tools/bench/bench.h"
#include "tools/commandline.h"
#include "tools/quote.h"

namespace tesk::vpi {

namespace {

std::string PlaceText(const std::string &path, const SBenchPlace &place)
{
    return place.line > 0 ? path + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) : path;
}

// Ends the simulation behind a time.
class CEnd : public IPart, public IWoken {
public:
    long long Wake(long long) override
    {
        vpi_control(vpiFinish, 0);
        return -1;
    }
};

// What is found in formulas is told when they meet their signals, by the resolution and the types of the simulation.
bool TellFaults(const SBench &bench, const std::vector<SBenchFault> &faults, const std::string &place)
{
    bool isUsable = true;
    for (const SBenchFault &fault : faults) {
        if (fault.isOfFormula || fault.isOfType)
            continue;
        isUsable = isUsable && fault.severity != ESeverity::Error;
        if (fault.place.line > 0)
            Tell(fault.severity, PlaceText(bench.path, fault.place), fault.text);
        else
            Tell(fault.severity, place, bench.path + ": " + fault.text);
    }
    return isUsable;
}

void StimulateAll(const SBench &bench)
{
    for (const SBenchSignal &signal : bench.signals) {
        const std::string place = PlaceText(bench.path, signal.place);
        try {
            const vpiHandle object = FindObject(signal.name);
            const long long start = std::max(TicksOf(signal.start, bench.resolution), Now());
            CSession::Current().Stimulate(object, {signal.formula, signal.typeName.empty() ? "" : signal.description,
                                                   signal.strength, start, place});
        } catch (const CRefusal &refusal) {
            Tell(ESeverity::Error, place, refusal.what());
        }
    }
}

void ReplayAll(const SBench &bench)
{
    for (const SBenchReplay &replay : bench.replays) {
        const std::string place = PlaceText(bench.path, replay.place);
        SReplayTimes times{TicksOf(replay.tolerance, bench.resolution), TicksOf(replay.from, bench.resolution),
                           std::nullopt};
        if (bench.until)
            times.until = TicksOf(*bench.until, bench.resolution);
        try {
            StartReplay(replay, times, place);
        } catch (const CRefusal &refusal) {
            Tell(ESeverity::Error, place, refusal.what());
        }
    }
}

// What the bench shows ends with that tick; what happens in it is to be seen.
void EndBehind(long long until)
{
    auto end = std::make_unique<CEnd>();
    if (until >= Now())
        CSession::Current().WakeUps().At(until + 1, *end);
    CSession::Current().Add(std::move(end));
}

}  // namespace

bool ApplyBench(const std::string &path, const std::string &place)
{
    const int before = CountErrors();
    std::vector<SBenchFault> faults;
    const SBench bench = ReadBench(path, faults);
    if (!TellFaults(bench, faults, place))
        return false;
    StimulateAll(bench);
    ReplayAll(bench);
    if (bench.until)
        EndBehind(TicksOf(*bench.until, bench.resolution));
    return CountErrors() == before;
}

std::string AskedBench()
{
    constexpr std::string_view Argument = "+tesk=";
    for (const std::string &argument : PlusArguments()) {
        if (argument.starts_with(Argument))
            return argument.substr(Argument.size());
    }
    const char *bench = std::getenv("TESK_BENCH");
    return bench != nullptr ? bench : "";
}

}  // namespace tesk::vpi
