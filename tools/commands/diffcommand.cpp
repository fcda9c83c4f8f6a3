// tesk diff: two waveform files compared.
#include <charconv>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/compare/diffreport.h"
#include "tools/compare/filediff.h"
#include "tools/files/selectedfile.h"
#include "tools/files/wavefile.h"
#include "tools/output.h"
#include "tools/timetext.h"
#include "tools/writers/formats.h"
#include "tools/writers/writers.h"

namespace {

struct SDiffOptions {
    std::string expected;
    std::string got;
    std::vector<std::string> globs;
    std::vector<std::string> scopes;
    std::string from;
    std::string until;
    std::string tolerance;
    std::string unknown = "match";
    std::string states = "4";
    std::string realTolerance;
    bool isCommon = false;
    long long limit = 20;
    std::string radix = "bin";
    std::string format = "text";
    std::string output;
    long long width = 0;
};

double ReadRealTolerance(const std::string &text)
{
    double tolerance = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), tolerance);
    const bool isRead = read.ec == std::errc() && read.ptr == text.data() + text.size();
    if (!isRead || !(tolerance >= 0) || std::isinf(tolerance))
        RefuseOption("--real-tolerance", text, "no number of 0 or above; write one such as 1e-9");
    return tolerance;
}

tesk::SFileDiffOptions ReadOptions(const SDiffOptions &options, long long resolution)
{
    tesk::SSelection stretch;
    tesk::ReadStretch(options.from, options.until, resolution, stretch);
    tesk::SFileDiffOptions read;
    read.policy.from = stretch.from.value_or(0);
    read.policy.until = stretch.until;
    read.policy.ignoresUnknown = options.unknown == "ignore";
    read.policy.hasNineStates = options.states == "9";
    if (!options.tolerance.empty())
        read.policy.tolerance = ReadTimeOption("--tolerance", options.tolerance, resolution);
    if (!options.realTolerance.empty())
        read.policy.realTolerance = ReadRealTolerance(options.realTolerance);
    for (const std::string &scope : options.scopes)
        read.scopes.push_back(tesk::ReadScopeMap(scope));
    read.globs = options.globs;
    return read;
}

void WriteDrawn(std::ostream &out, tesk::IWaveformFile &expected, tesk::IWaveformFile &got,
                const tesk::SDiffReport &report, int width)
{
    const SWaveform waveform = tesk::DrawnDifference(expected, got, report);
    if (!waveform.traces.empty())
        tesk::FindOutputFormat("wave", "").write(out, waveform, width);
    tesk::WriteDiffText(out, report);
}

int Diff(const SDiffOptions &options)
{
    if (options.expected == "-" && options.got == "-")
        throw CWrongUsage("standard input can be one of the files only; give the other one by its name");
    const std::unique_ptr<tesk::IWaveformFile> expected = OpenWaveFile(options.expected);
    const std::unique_ptr<tesk::IWaveformFile> got = OpenWaveFile(options.got);
    const long long resolution = tesk::CommonResolution(*expected, *got);
    const tesk::SFileDiff diff = tesk::DiffFiles(*expected, *got, ReadOptions(options, resolution));
    const tesk::SDiffReport report{options.expected,
                                   options.got,
                                   diff,
                                   static_cast<std::size_t>(options.limit),
                                   options.isCommon,
                                   *tesk::RadixOf(options.radix)};
    WriteOutput(options.output, [&](std::ostream &out) {
        if (options.format == "json")
            tesk::WriteDiffJson(out, report);
        else if (options.format == "wave")
            WriteDrawn(out, *expected, *got, report, static_cast<int>(options.width));
        else
            tesk::WriteDiffText(out, report);
    });
    return tesk::IsEqual(report) ? 0 : 1;
}

}  // namespace

void AddDiffCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("diff", "Compare two waveform files, signal by signal, by value over time");
    const auto options = std::make_shared<SDiffOptions>();
    command.Argument("a", options->expected, "VCD, FST, GHW or event stream: what is expected. - is standard input");
    command.Argument("b", options->got, "What was got, of the same or another kind");
    command.Arguments("glob", options->globs,
                      "Signals of A to compare, such as \"tb.*\"; * crosses dots (default: all)");
    command.Options(
        "--scope", options->scopes, "A=B",
        "Compare what is below scope A of the first file with what is below B of the second; may be repeated");
    command.Option("--from", options->from, "TIME", "Compare from there on, with the values in force there");
    command.Option("--until", options->until, "TIME", "Compare up to there (default: to the end of the shorter file)");
    command.Option("--tolerance", options->tolerance, "TIME", "A change may come so much earlier or later (default 0)");
    command.Choice("--x", options->unknown, {"match", "ignore"},
                   "ignore: where A is unknown, B may have any value (default match: x is a value)");
    command.Choice("--states", options->states, {"4", "9"},
                   "4 (default): H is 1, L is 0, and U, W, - are x; 9: all letters of std_logic are told apart");
    command.Option("--real-tolerance", options->realTolerance, "NUMBER",
                   "Reals may be so far apart (default: what the 16 digits of a dump lose)");
    command.Flag("--common", options->isCommon, "What only one file has is told, but is no difference");
    command.Number("--limit", options->limit, 0, 1000000000,
                   "Differences shown, one for each signal; 0 for all (default 20)");
    command.Choice("--radix", options->radix, tesk::RadixNames(), "Of buses (default bin)");
    command.Choice("--format", options->format, {"text", "json", "wave"},
                   "wave draws both files around the first difference (default text)");
    command.Number("--width", options->width, 40, 100000, "Of --format wave, in columns");
    command.Option("-o,--output", options->output, "FILE", "Write to a file, whole or not at all");
    command.Footer(
        "Status: 0 equal, 1 different or a file is refused, 2 wrong usage.\n"
        "Names are the same in any letter case; a bus may be single bits in the other file. A signal without a\n"
        "value yet is x. With --tolerance T each file must at every moment show a value that the other one shows\n"
        "at most T earlier or later. A file that ends while the other one goes on changing is a difference.\n"
        "Example: tesk diff good.vcd today.fst \"tb.dut.*\" --tolerance 1ns --x ignore");
    command.Action([options] { return Diff(*options); });
}
