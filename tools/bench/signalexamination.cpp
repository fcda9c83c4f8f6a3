#include "tools/bench/signalexamination.h"

#include <string>

#include "tools/examine/examination.h"
#include "tools/examine/findingtext.h"
#include "tools/play/fileformula.h"
#include "tools/quote.h"

namespace tesk {

void ExamineBenchSignal(const SBench &bench, SBenchSignal &signal, std::vector<SBenchFault> &faults)
{
    if (signal.description.empty())
        signal.description = FindReplayedType(signal.formula);
    const std::string name = "signal " + Quote(signal.name) + ": ";
    const SExamined examined{signal.formula, signal.description, bench.resolution, signal.start};
    for (const SFinding &finding : ExamineFormula(examined))
        faults.push_back({finding.severity, signal.place, name + FindingLine(finding), !finding.isRefused});
    if (!signal.description.empty() || !signal.typeName.empty() || !NeedsType(signal.formula))
        return;
    const std::string advice =
        bench.path.empty() ? signal.name + ":integer=FORMULA" : "type = \"integer\", beside formula = \"...\"";
    faults.push_back({ESeverity::Error, signal.place,
                      name + "a table is read by the type of the signal; give it one, such as " + advice});
    faults.back().isOfType = true;
}

}  // namespace tesk
