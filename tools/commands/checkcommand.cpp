// tesk check: the canonical text of a formula, and whether its times make sense.
#include <iostream>
#include <memory>
#include <string>

#include "tools/commands/commands.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"
#include "tools/play/typeargument.h"
#include "tools/timetext.h"

namespace {

struct SCheckOptions {
    std::string formula;
    std::string type;
    std::string resolution = "1ps";
    std::string start;
};

// The settings check in words; `time` is that of the event which result 1 is about.
std::string Verdict(int result, const std::string &time)
{
    switch (result) {
    case 0: return "The times are consistent.";
    case 1: return "The absolute event at " + time + " lies before the stimulator starts.";
    case 2: return "The relative events are not in rising order.";
    case 3: return "The repeat period is shorter than the sequence.";
    case 4: return "The stimulator is cancelled before it starts.";
    case 5: return "The cancel time is not later than the last relative event.";
    case 6: return "The start of the stretch is not before its end.";
    default: return "The settings check gives " + std::to_string(result) + ".";
    }
}

int Check(const SCheckOptions &options)
{
    const long long resolution = ReadResolution(options.resolution);
    const long long start = options.start.empty() ? 0 : ReadTimeOption("--start", options.start, resolution);
    if (!options.type.empty())
        IStimulus::SetupAdditionalInfo(SignalName, ReadTypeArgument(options.type).c_str());
    const CSimulationRun run;
    const tesk::StimulusPtr stimulus = CreateStimulus(options.formula, start, resolution);
    long long time = 0;
    const int result = stimulus->CheckSettings(&time);  // first: writing the formula moves the events
    SimpleString::CStr canonical;
    stimulus->GetFormula(canonical);
    if (canonical.IsEmpty())
        canonical = options.formula.c_str();  // a kind without a text form of its own
    std::cout << canonical << '\n' << Verdict(result, TickText(time, resolution)) << '\n';
    return result == 0 ? 0 : 1;
}

}  // namespace

void AddCheckCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("check", "Write a formula in its canonical form and check its times");
    const auto options = std::make_shared<SCheckOptions>();
    command.Argument("formula", options->formula, "What to check");
    command.Option("--type", options->type, "TYPE", "Type of the signal, needed by a formula that reads a table");
    AddTimeOptions(command, options->resolution, options->start);
    command.Footer("Status 1 if the check finds a fault.\nExample: tesk check \"1 5ns, 0 2ns, 1 5ns\"");
    command.Action([options] { return Check(*options); });
}
