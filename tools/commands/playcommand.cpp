// tesk play: walks a stimulus and writes its changes.
#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "tools/commands/commands.h"
#include "tools/examine/explained.h"
#include "tools/output.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"
#include "tools/play/playedsignal.h"
#include "tools/play/player.h"
#include "tools/timetext.h"
#include "tools/writers/picture.h"
#include "tools/writers/writers.h"

namespace {

struct SPlayOptions {
    std::string formula;
    std::string resolution = "1ps";
    std::string start;
    std::string until;
    std::string format;
    std::string output;
    long long width = 0;
    std::string type;
    long long count = 0;
    bool isStrict = false;
};

using CWriter = void (*)(std::ostream &out, const SWaveform &waveform, int width);

const std::map<std::string, CWriter> Writers = {
    {"table", [](std::ostream &out, const SWaveform &waveform, int) { WriteTable(out, waveform); }},
    {"csv", [](std::ostream &out, const SWaveform &waveform, int) { WriteCsv(out, waveform); }},
    {"json", [](std::ostream &out, const SWaveform &waveform, int) { WriteJson(out, waveform); }},
    {"vcd", [](std::ostream &out, const SWaveform &waveform, int) { WriteVcd(out, waveform); }},
    {"svg", [](std::ostream &out, const SWaveform &waveform,
               int width) { WriteSvg(out, waveform, width != 0 ? width : 900); }},
    {"wave", [](std::ostream &out, const SWaveform &waveform,
                int width) { WriteWave(out, waveform, width != 0 ? width : TerminalWidth()); }},
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

void PlayFormula(const SPlayOptions &options, const SPlayedSignal &signal, SWaveform &waveform)
{
    std::optional<long long> until;
    if (!options.until.empty())
        until = ReadTimeOption("--until", options.until, waveform.resolution);
    waveform.traces = PlayOnSignal(options.formula, signal, waveform.begin, waveform.resolution, until);
    waveform.end = std::max(until.value_or(PictureEnd(waveform)), waveform.begin);
}

int Play(const SPlayOptions &options)
{
    const std::string format = !options.format.empty() ? options.format : IsTerminal() ? "table" : "csv";
    SWaveform waveform = DescribeWalk(options);
    const SPlayedSignal signal = DescribePlayed(options);
    const tesk::CExamined examined({options.formula, signal.description, waveform.resolution, waveform.begin});
    if (options.isStrict && examined.HasError()) {
        examined.Tell();
        return 1;
    }
    examined.Explain([&] { PlayFormula(options, signal, waveform); });
    examined.Tell();
    WriteOutput(options.output,
                [&](std::ostream &out) { Writers.at(format)(out, waveform, static_cast<int>(options.width)); });
    return 0;
}

}  // namespace

void AddPlayCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("play", "Walk a stimulus and write its changes");
    const auto options = std::make_shared<SPlayOptions>();
    command.Argument("formula", options->formula, "What to play");
    AddTimeOptions(command, options->resolution, options->start);
    command.Option("--type", options->type, "TYPE",
                   "Type of the signal, such as bit or std_logic_vector(7 downto 0), or a whole description");
    command.Number("--count", options->count, 1, 1 << 20, "Play on a vector of so many wires");
    command.Option("--until", options->until, "TIME",
                   "Where to end (default: where the stimulator ends, else after 40 changes)");
    command.Choice("--format", options->format, {"table", "csv", "json", "vcd", "svg", "wave"},
                   "Default: table on a terminal, csv elsewhere");
    command.Option("-o,--output", options->output, "FILE", "Write to a file, whole or not at all");
    command.Flag("--strict", options->isStrict, "Play nothing, with status 1, if the formula cannot mean what it says");
    command.Number("--width", options->width, 40, 100000, "Of a picture, in pixels (svg) or columns (wave)");
    command.Footer("Example: tesk play \"1 10ns, 0 20ns -r 30ns -cancel 100ns\" --format wave");
    command.Action([options] { return Play(*options); });
}
