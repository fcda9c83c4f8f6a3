// tesk play: walks a stimulus and writes its changes.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "tools/bench/bench.h"
#include "tools/bench/benchplayer.h"
#include "tools/bench/namedformulas.h"
#include "tools/bench/toldbench.h"
#include "tools/commands/commands.h"
#include "tools/examine/explained.h"
#include "tools/help/commandtable.h"
#include "tools/output.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"
#include "tools/play/playedsignal.h"
#include "tools/play/player.h"
#include "tools/play/walk.h"
#include "tools/quote.h"
#include "tools/timetext.h"
#include "tools/writers/formats.h"
#include "tools/writers/picture.h"
#include "tools/writers/valuetext.h"
#include "tools/writers/writers.h"

namespace {

struct SPlayOptions {
    std::string formula;
    std::vector<std::string> more;  // signals behind the first
    std::string resolution = "1ps";
    std::string start;
    std::string from;
    std::string until;
    std::string name;
    std::string radix;
    bool hasNoElements = false;
    std::string format;
    std::string output;
    long long width = 0;
    std::string type;
    long long count = 0;
    bool isStrict = false;
};

// Without a type a formula that replays a signal is played on a signal of that one's type.
SPlayedSignal DescribePlayed(const SPlayOptions &options)
{
    const bool isTold = !options.type.empty() || options.count != 0;
    return DescribeSignal(isTold ? options.type : FindReplayedType(options.formula), options.count);
}

SWaveform DescribeWalk(const SPlayOptions &options)
{
    SWaveform waveform;
    waveform.formula = options.formula;
    waveform.resolution = ReadResolution(options.resolution);
    if (!options.start.empty())
        waveform.begin = ReadTimeOption("--start", options.start, waveform.resolution);
    return waveform;
}

tesk::SWalkTimes ReadTimes(const SPlayOptions &options, const SWaveform &waveform)
{
    tesk::SWalkTimes times{waveform.begin, waveform.begin, {}};
    if (!options.until.empty())
        times.until = ReadTimeOption("--until", options.until, waveform.resolution);
    if (!options.from.empty())
        times.from = std::max(ReadTimeOption("--from", options.from, waveform.resolution), waveform.begin);
    if (!options.from.empty() && times.until && times.from > *times.until)
        RefuseOption("--from", options.from, "later than --until " + options.until);
    return times;
}

void TellCut(const SPlayed &played)
{
    if (played.isCut)
        std::fprintf(
            stderr, "tesk: the stimulator goes on for ever; these are its first %zu changes, give --until for others\n",
            DefaultChanges);
}

void PlayFormula(const SPlayOptions &options, const SPlayedSignal &signal, SWaveform &waveform)
{
    const tesk::SWalkTimes times = ReadTimes(options, waveform);
    SPlayed played = PlayOnSignal(options.formula, signal, waveform.resolution, times);
    TellCut(played);
    waveform.traces = std::move(played.traces);
    waveform.begin = times.from;
    waveform.end = std::max(times.until.value_or(PictureEnd(waveform)), waveform.begin);
}

// What was played as it is to be shown.
void Arrange(const SPlayOptions &options, bool showsRadix, SWaveform &waveform)
{
    if (options.hasNoElements)
        std::erase_if(waveform.traces, [](const STrace &trace) { return trace.IsElement(); });
    const std::optional<tesk::ERadix> radix = tesk::RadixOf(options.radix);
    if (radix && showsRadix)
        tesk::ShowInRadix(waveform, *radix);
    tesk::DrawRealsAsCurves(waveform);
}

// Plays a bench, unless one of its faults is in the way. All of them are told.
SWaveform PlayBench(const SPlayOptions &options, const tesk::SBench &bench, std::vector<tesk::SBenchFault> faults)
{
    const bool isUnread = tesk::CannotBeUsed(faults);
    tesk::SBenchStretch stretch;
    if (!options.from.empty())
        stretch.from = ReadTimeOption("--from", options.from, bench.resolution);
    if (!options.until.empty())
        stretch.until = ReadTimeOption("--until", options.until, bench.resolution);
    if (!options.from.empty() && stretch.until && stretch.from > *stretch.until)
        RefuseOption("--from", options.from, "later than --until " + options.until);
    tesk::CBenchPlayer player(bench, stretch, faults);
    for (const tesk::SBenchFault &fault : faults)
        std::fprintf(stderr, "tesk: %s\n", tesk::FaultLine(bench, fault).c_str());
    if (isUnread || !player.CanPlay() || (options.isStrict && tesk::HasError(faults)))
        throw CRefusal(bench.path.empty()
                           ? "the signals are not played"
                           : bench.path + ": the bench is not played; \"tesk check\" tells its faults as data");
    return player.Play();
}

SWaveform PlayBenchFile(const SPlayOptions &options)
{
    std::vector<tesk::SBenchFault> faults;
    const tesk::SBench bench = tesk::ReadBench(options.formula, faults);
    return PlayBench(options, bench, std::move(faults));
}

SWaveform PlayNamed(const SPlayOptions &options)
{
    SWaveform described = DescribeWalk(options);
    std::vector<std::string> arguments = {options.formula};
    arguments.insert(arguments.end(), options.more.begin(), options.more.end());
    std::vector<tesk::SBenchFault> faults;
    const tesk::SBench bench = tesk::BenchOfArguments(arguments, described.resolution, described.begin, faults);
    SWaveform waveform = PlayBench(options, bench, std::move(faults));
    waveform.formula = tesk::JoinWords(arguments, " ");
    return waveform;
}

void Write(const SPlayOptions &options, SWaveform &waveform)
{
    const tesk::SOutputFormat &format = tesk::FindOutputFormat(options.format, options.output);
    tesk::RefuseBinaryOnTerminal(format, options.output);
    Arrange(options, format.showsRadix, waveform);
    WriteOutput(options.output,
                [&](std::ostream &out) { format.write(out, waveform, static_cast<int>(options.width)); });
}

// Rows of a single signal can be written as they come, however many there are.
bool IsWrittenAsItComes(const SPlayOptions &options, const SPlayedSignal &signal)
{
    const std::string format = tesk::FindOutputFormat(options.format, options.output).name;
    return format == "csv" && options.radix.empty() && signal.elements.empty();
}

void PlayAsItComes(const SPlayOptions &options, const SPlayedSignal &signal, const SWaveform &waveform,
                   const tesk::CExamined &examined)
{
    const tesk::SWalkTimes times = ReadTimes(options, waveform);
    WriteOutput(options.output, [&](std::ostream &out) {
        CCsvRows rows(out, waveform.resolution, options.name);
        bool isTold = false;
        const auto write = [&](const STrace &part) {
            if (!isTold)
                examined.Tell();
            isTold = true;
            rows.Write(part);
        };
        const SPlayed played = PlayOnSignal(options.formula, signal, waveform.resolution, times, write);
        TellCut(played);
        for (const STrace &trace : played.traces)
            write(trace);
    });
}

int Play(const SPlayOptions &options)
{
    SWaveform waveform = DescribeWalk(options);
    const SPlayedSignal signal = DescribePlayed(options);
    const tesk::CExamined examined({options.formula, signal.description, waveform.resolution, waveform.begin});
    if (options.isStrict && examined.HasError()) {
        examined.Tell();
        return 1;
    }
    if (IsWrittenAsItComes(options, signal)) {
        examined.Explain([&] { PlayAsItComes(options, signal, waveform, examined); });
        return 0;
    }
    examined.Explain([&] { PlayFormula(options, signal, waveform); });
    examined.Tell();
    for (STrace &trace : waveform.traces)
        trace.signal = options.name;
    Write(options, waveform);
    return 0;
}

enum class EPlayed { Formula, BenchFile, Named };

EPlayed WhatIsPlayed(const SPlayOptions &options)
{
    std::error_code ignored;
    const bool isNamed = tesk::IsNamedFormula(options.formula);
    if (tesk::IsBenchName(options.formula) && (!isNamed || std::filesystem::exists(options.formula, ignored)))
        return EPlayed::BenchFile;
    return isNamed || !options.more.empty() ? EPlayed::Named : EPlayed::Formula;
}

// Options that many signals have each for itself, and where a bench file tells them.
struct SOptionElsewhere {
    const char *name;
    bool isOfNamed;  // also where the signals are named on the command line
};
constexpr SOptionElsewhere OptionsElsewhere[] = {
    {"--type", true}, {"--count", true}, {"--name", true}, {"--start", false}, {"--res", false}};

void RefuseOptions(const SPlayOptions &options, const CCommand &command, EPlayed played)
{
    const bool isFile = played == EPlayed::BenchFile;
    if (isFile && !options.more.empty())
        throw CWrongUsage(Quote(options.more.front()) + ": a bench file stands alone; write the signal into it");
    for (const SOptionElsewhere &option : OptionsElsewhere) {
        if (command.Has(option.name) && (isFile || option.isOfNamed))
            throw CWrongUsage(std::string(option.name) +
                              (isFile ? ": a bench tells it for each of its signals, in the file"
                                      : ": several signals have each their own; write NAME:TYPE=FORMULA"));
    }
}

int PlayAny(const SPlayOptions &options, const CCommand &command)
{
    const EPlayed played = WhatIsPlayed(options);
    if (played == EPlayed::Formula)
        return Play(options);
    RefuseOptions(options, command, played);
    SWaveform waveform = played == EPlayed::Named ? PlayNamed(options) : PlayBenchFile(options);
    Write(options, waveform);
    return 0;
}

}  // namespace

void AddPlayCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("play", "Walk a stimulus and write its changes");
    const auto options = std::make_shared<SPlayOptions>();
    command.Argument(
        "formula", options->formula,
        "What to play; or NAME=FORMULA or NAME:TYPE=FORMULA, which a blank in front makes a mere formula; or a "
        "bench file whose name ends in .toml");
    command.Arguments("signal", options->more,
                      "More signals, NAME=FORMULA or NAME:TYPE=FORMULA each, as the first then is");
    AddTimeOptions(command, options->resolution, options->start);
    command.Option("--type", options->type, "TYPE",
                   "Type of the signal, such as bit or std_logic_vector(7 downto 0), or a whole description");
    command.Number("--count", options->count, 1, 1 << 20, "Play on a vector of so many wires");
    command.Option("--from", options->from, "TIME",
                   "Where to begin, with the value in force there (default: when the stimulator is applied)");
    command.Option("--until", options->until, "TIME",
                   "Where to end (default: where the stimulator ends, else after 40 changes)");
    command.Choice("--format", options->format, tesk::OutputFormatNames(),
                   "Default: by the ending of the output, else table on a terminal and csv elsewhere");
    command.Option("-o,--output", options->output, "FILE",
                   "Write to a file, whole or not at all; - is standard output");
    command.Option("--name", options->name, "NAME", "What the signal is called in the output");
    command.Choice("--radix", options->radix, tesk::RadixNames(),
                   "How the values of buses are shown, but in a dump; analog draws curves");
    command.Flag("--no-elements", options->hasNoElements, "Show a composite signal without its elements");
    command.Flag("--strict", options->isStrict, "Play nothing, with status 1, if a formula cannot mean what it says");
    command.Number("--width", options->width, 40, 100000, "Of a picture, in pixels (svg) or columns (wave)");
    command.Footer("\"tesk help formulas\" tells how a formula is written.\nExample: tesk play \"1 10ns, 0 20ns -r "
                   "30ns -cancel 100ns\" --format wave");
    command.Action([options, command] { return PlayAny(*options, command); });
}
