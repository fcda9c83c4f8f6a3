// The comparison of two files, for a program.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "tools/compare/diffreport.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

using CJson = nlohmann::ordered_json;

void AddTime(CJson &object, const std::string &name, long long ticks, long long resolution)
{
    object[name + "_ticks"] = ticks;
    object[name] = TickText(ticks, resolution);
}

CJson DifferencesOf(const SDiffReport &report, const std::vector<std::size_t> &signals)
{
    CJson differences = CJson::array();
    for (std::size_t i = 0; i < ShownOf(report, signals.size()); ++i) {
        const std::size_t signal = signals[i];
        const SSignalPair &pair = report.diff.signals.pairs[signal];
        const SPairVerdict &verdict = report.diff.Verdict(signal);
        CJson entry = {{"signal", pair.expectedName}, {"got_signal", pair.gotName}};
        AddTime(entry, "first", verdict.first->time, report.diff.resolution);
        entry["expected"] = ValueText(report, signal, verdict.first->expected);
        entry["got"] = ValueText(report, signal, verdict.first->got);
        entry["times"] = verdict.stretches;
        differences.push_back(std::move(entry));
    }
    return differences;
}

CJson UnlikeOf(const SDiffReport &report)
{
    CJson unlike = CJson::array();
    for (const SUnlikePair &pair : report.diff.signals.unlike)
        unlike.push_back({{"signal", pair.expectedName},
                          {"got_signal", pair.gotName},
                          {"expected_type", pair.expectedType},
                          {"got_type", pair.gotType}});
    return unlike;
}

CJson EarlyEndOf(const SFileDiff &diff)
{
    if (!diff.earlyEnd)
        return nullptr;
    CJson end = {{"file", diff.earlyEnd->side == ECompareSide::Expected ? "expected" : "got"}};
    AddTime(end, "end", diff.earlyEnd->end, diff.resolution);
    AddTime(end, "next", diff.earlyEnd->next, diff.resolution);
    end["signal"] = diff.earlyEnd->signal;
    return end;
}

}  // namespace

void WriteDiffJson(std::ostream &out, const SDiffReport &report)
{
    const SFileDiff &diff = report.diff;
    const std::vector<std::size_t> signals = DifferingSignals(diff);
    CJson document = {{"expected", report.expectedPath},
                      {"got", report.gotPath},
                      {"equal", IsEqual(report)},
                      {"resolution", TickText(1, diff.resolution)},
                      {"resolution_fs", diff.resolution}};
    AddTime(document, "from", diff.from, diff.resolution);
    AddTime(document, "until", diff.until, diff.resolution);
    document["compared"] = diff.signals.pairs.size();
    document["different"] = signals.size();
    document["differences"] = DifferencesOf(report, signals);
    document["only_expected"] = diff.signals.missing;
    document["only_got"] = diff.signals.additional;
    document["unlike"] = UnlikeOf(report);
    document["early_end"] = EarlyEndOf(diff);
    out << document.dump(2, ' ', false, CJson::error_handler_t::replace) << '\n';
}

}  // namespace tesk
