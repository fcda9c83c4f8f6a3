#include "tools/play/player.h"

#include <span>

#include "tools/play/formula.h"
#include "tools/play/preparedsignal.h"
#include "tools/play/walk.h"

SPlayed PlayOnSignal(const std::string &formula, const SPlayedSignal &signal, long long resolution,
                     const tesk::SWalkTimes &times, const tesk::CTraceSink &sink)
{
    const CSimulationRun run;
    tesk::CPreparedSignal prepared(formula, signal, resolution, times);
    tesk::CChangeSink changeSink;
    if (sink && prepared.IsSingle())
        changeSink = [&](const std::vector<SChange> &changes) { sink(prepared.Part(changes)); };
    const tesk::SWalkGroup group = prepared.Group();
    tesk::SWalked walked = tesk::Walk(std::span(&group, 1), {times.from, times.until, prepared.Ended()}, changeSink);
    return {prepared.Show(walked.changes), walked.isCut};
}
