// tesk check: the canonical text of a formula, and whether its times make sense.
#include <algorithm>
#include <cstddef>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/bench/bench.h"
#include "tools/bench/benchcheck.h"
#include "tools/commands/commands.h"
#include "tools/examine/explained.h"
#include "tools/message.h"
#include "tools/output.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"
#include "tools/play/typeargument.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace {

struct SCheckOptions {
    std::string formula;
    std::string type;
    std::string resolution = "1ps";
    std::string start;
    std::string format = "text";
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

// What a check says of one formula.
struct SVerdict {
    std::string canonical;
    tesk::CFindings findings;
    int result = 0;  // of the settings check
    std::string text;

    int Status() const { return result == 0 && !tesk::HasError(findings) ? 0 : 1; }
};

SVerdict Judge(const SCheckOptions &options, const std::string &formula)
{
    const long long resolution = ReadResolution(options.resolution);
    const long long start = options.start.empty() ? 0 : ReadTimeOption("--start", options.start, resolution);
    const std::string type = options.type.empty() ? "" : ReadTypeArgument(options.type);
    if (!type.empty())
        IStimulus::SetupAdditionalInfo(SignalName, type.c_str());
    const tesk::CExamined examined({formula, type, resolution, start});
    const CSimulationRun run;
    const tesk::StimulusPtr stimulus = examined.Explain([&] { return CreateStimulus(formula, start, resolution); });
    SVerdict verdict;
    verdict.findings = examined.Findings();
    long long time = 0;
    verdict.result = stimulus->CheckSettings(&time);  // first: writing the formula moves the events
    SimpleString::CStr canonical;
    stimulus->GetFormula(canonical);
    verdict.canonical =
        canonical.IsEmpty() ? formula : std::string(canonical);  // a kind without a text form of its own
    verdict.text = Verdict(verdict.result, TickText(time, resolution));
    return verdict;
}

const char *NameOf(tesk::ESeverity severity)
{
    return severity == tesk::ESeverity::Error ? "error: " : "warning: ";
}

void WriteFinding(const tesk::SFinding &finding, const std::string &formula)
{
    constexpr std::size_t Width = 76;
    std::cout << NameOf(finding.severity) << tesk::FindingLine(finding) << '\n';
    const std::string picture = IsTerminal() ? tesk::FindingPicture(finding, formula, Width) : "";
    if (!picture.empty())
        std::cout << picture << '\n';
}

void WriteText(const SVerdict &verdict, const std::string &formula)
{
    std::cout << verdict.canonical << '\n';
    for (const tesk::SFinding &finding : verdict.findings)
        WriteFinding(finding, formula);
    // Where the words of a formula are wrong, what its times are is of no interest.
    if (verdict.result != 0 || !tesk::HasError(verdict.findings))
        std::cout << verdict.text << '\n';
}

void WriteLine(const nlohmann::json &data)
{
    std::cout << data.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

void WriteCheckJson(const std::string &formula, const SVerdict &verdict)
{
    const nlohmann::json data = {{"formula", formula},
                                 {"canonical", verdict.canonical},
                                 {"findings", tesk::FindingsJson(verdict.findings)},
                                 {"settings", verdict.result},
                                 {"verdict", verdict.text},
                                 {"status", verdict.Status()}};
    WriteLine(data);
}

// As data, a formula that is refused is told where the others are.
void WriteRefusedJson(const std::string &formula, const std::string &why)
{
    WriteLine({{"formula", formula},
               {"canonical", nullptr},
               {"findings", nlohmann::json::array()},
               {"refused", why},
               {"status", 1}});
}

int CheckOne(const SCheckOptions &options, const std::string &formula)
try {
    const SVerdict verdict = Judge(options, formula);
    if (options.format == "json")
        WriteCheckJson(formula, verdict);
    else
        WriteText(verdict, formula);
    return verdict.Status();
} catch (const CRefusal &refusal) {
    if (options.format == "json")
        WriteRefusedJson(formula, refusal.what());
    else
        throw;
    return 1;
}

// A formula a line; one that is refused does not keep the others from being checked.
int CheckLines(const SCheckOptions &options)
{
    int status = 0;
    std::string line;
    for (int number = 1; std::getline(std::cin, line); ++number) {
        if (line.ends_with('\r'))
            line.pop_back();
        if (line.empty())
            continue;
        try {
            status |= CheckOne(options, line);
        } catch (const CRefusal &refusal) {
            std::cout.flush();
            TellRefusal("line " + std::to_string(number) + ": " + refusal.what());
            status = 1;
        }
    }
    return status;
}

std::string Count(std::ptrdiff_t number, const std::string &what)
{
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

void WriteBenchText(const tesk::SBench &bench, const std::vector<tesk::SBenchFault> &faults)
{
    for (const tesk::SBenchFault &fault : faults)
        std::cout << tesk::FaultLine(bench, fault) << '\n';
    const auto errors = std::ranges::count(faults, tesk::ESeverity::Error, &tesk::SBenchFault::severity);
    std::cout << Count(std::ssize(bench.signals), "signal") << ", " << Count(std::ssize(bench.replays), "replay")
              << ": " << Count(errors, "error") << ", " << Count(std::ssize(faults) - errors, "warning") << '\n';
}

void WriteBenchJson(const tesk::SBench &bench, const std::vector<tesk::SBenchFault> &faults)
{
    nlohmann::json signals = nlohmann::json::array(), findings = nlohmann::json::array();
    for (const tesk::SBenchSignal &signal : bench.signals)
        signals.push_back({{"name", signal.name}, {"type", signal.typeName}, {"formula", signal.formula}});
    for (const tesk::SBenchFault &fault : faults)
        findings.push_back({{"severity", fault.severity == tesk::ESeverity::Error ? "error" : "warning"},
                            {"line", fault.place.line},
                            {"column", fault.place.column},
                            {"text", fault.text}});
    const nlohmann::json data = {{"bench", bench.path},
                                 {"signals", signals},
                                 {"findings", findings},
                                 {"status", tesk::HasError(faults) ? 1 : 0}};
    std::cout << data.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

int CheckBench(const SCheckOptions &options)
{
    std::vector<tesk::SBenchFault> faults;
    const tesk::SBench bench = tesk::ReadBench(options.formula, faults);
    tesk::CheckBenchStimuli(bench, faults);
    if (options.format == "json")
        WriteBenchJson(bench, faults);
    else
        WriteBenchText(bench, faults);
    return tesk::HasError(faults) ? 1 : 0;
}

int Check(const SCheckOptions &options)
{
    if (tesk::IsBenchName(options.formula))
        return CheckBench(options);
    return options.formula == "-" ? CheckLines(options) : CheckOne(options, options.formula);
}

}  // namespace

void AddCheckCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("check", "Write a formula in its canonical form and check its times");
    const auto options = std::make_shared<SCheckOptions>();
    command.Argument("formula", options->formula, "What to check, or a bench file whose name ends in .toml");
    command.Option("--type", options->type, "TYPE", "Type of the signal, needed by a formula that reads a table");
    AddTimeOptions(command, options->resolution, options->start);
    command.Choice("--format", options->format, {"text", "json"}, "Text, or a line of JSON for each formula");
    command.Footer("The formula - stands for standard input, a formula a line.\nStatus 1 if the check finds a "
                   "fault.\nExample: tesk check \"1 5ns, 0 2ns, 1 5ns\"");
    command.Action([options] { return Check(*options); });
}
