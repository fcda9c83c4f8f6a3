// tesk play: walks a stimulus and writes its changes.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/bench/bench.h"
#include "tools/bench/benchplayer.h"
#include "tools/commands/commands.h"
#include "tools/examine/explained.h"
#include "tools/output.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"
#include "tools/play/playedsignal.h"
#include "tools/play/player.h"
#include "tools/play/walk.h"
#include "tools/timetext.h"
#include "tools/writers/formats.h"
#include "tools/writers/picture.h"
#include "tools/writers/valuetext.h"
#include "tools/writers/writers.h"

namespace {

struct SPlayOptions {
    std::string formula;
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
}

// Options that a bench has for each of its signals.
constexpr const char *SignalOptions[] = {"--type", "--count", "--start", "--name", "--res"};

SWaveform PlayBenchFile(const SPlayOptions &options)
{
    std::vector<tesk::SBenchFault> faults;
    const tesk::SBench bench = tesk::ReadBench(options.formula, faults);
    for (const tesk::SBenchFault &fault : faults)
        std::fprintf(stderr, "tesk: %s\n", tesk::FaultLine(bench, fault).c_str());
    // A formula that cannot mean what it says is played by the letter; a bench that cannot be read is not.
    const bool isUnread = std::ranges::any_of(faults, [](const tesk::SBenchFault &fault) {
        return fault.severity == tesk::ESeverity::Error && !fault.isOfFormula;
    });
    if (isUnread || (options.isStrict && tesk::HasError(faults)))
        throw CRefusal(options.formula + ": the bench is not played; \"tesk check\" tells its faults as data");
    tesk::SBenchStretch stretch;
    if (!options.from.empty())
        stretch.from = ReadTimeOption("--from", options.from, bench.resolution);
    if (!options.until.empty())
        stretch.until = ReadTimeOption("--until", options.until, bench.resolution);
    return tesk::PlayBench(bench, stretch);
}

void Write(const SPlayOptions &options, SWaveform &waveform)
{
    const tesk::SOutputFormat &format = tesk::FindOutputFormat(options.format, options.output);
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

}  // namespace

void AddPlayCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("play", "Walk a stimulus and write its changes");
    const auto options = std::make_shared<SPlayOptions>();
    command.Argument("formula", options->formula, "What to play, or a bench file whose name ends in .toml");
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
    command.Choice("--radix", options->radix, tesk::RadixNames(), "How the values of buses are shown, but in a dump");
    command.Flag("--no-elements", options->hasNoElements, "Show a composite signal without its elements");
    command.Flag("--strict", options->isStrict, "Play nothing, with status 1, if the formula cannot mean what it says");
    command.Number("--width", options->width, 40, 100000, "Of a picture, in pixels (svg) or columns (wave)");
    command.Footer("\"tesk help formulas\" tells how a formula is written.\nExample: tesk play \"1 10ns, 0 20ns -r "
                   "30ns -cancel 100ns\" --format wave");
    command.Action([options, command] {
        if (!tesk::IsBenchName(options->formula))
            return Play(*options);
        for (const char *option : SignalOptions) {
            if (command.Has(option))
                throw CWrongUsage(std::string(option) + ": a bench tells it for each of its signals, in the file");
        }
        SWaveform waveform = PlayBenchFile(*options);
        Write(*options, waveform);
        return 0;
    });
}
