// tesk play: walks a stimulus and writes its changes.
#include <algorithm>
#include <limits>
#include <map>

#include "tools/commands.h"
#include "tools/formula.h"
#include "tools/output.h"
#include "tools/picture.h"
#include "tools/timetext.h"
#include "tools/walk.h"
#include "tools/writers.h"

namespace {

struct SPlayOptions {
    std::string formula;
    std::string resolution = "1ps";
    std::string start;
    std::string until;
    std::string format;
    std::string output;
    int width = 0;
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

SWaveform PlayFormula(const SPlayOptions &options)
{
    SWaveform waveform;
    waveform.formula = options.formula;
    waveform.resolution = ReadResolution(options.resolution);
    if (!options.start.empty())
        waveform.begin = ReadTimeOption("--start", options.start, waveform.resolution);
    std::optional<long long> until;
    if (!options.until.empty())
        until = ReadTimeOption("--until", options.until, waveform.resolution);

    const StimulusPtr stimulus = CreateStimulus(options.formula, waveform.begin, waveform.resolution);
    waveform.traces.push_back({"", Walk(*stimulus, until)});
    waveform.end = std::max(until.value_or(PictureEnd(waveform)), waveform.begin);
    return waveform;
}

void Play(const SPlayOptions &options)
{
    const std::string format = !options.format.empty() ? options.format : IsTerminal() ? "table" : "csv";
    const SWaveform waveform = PlayFormula(options);
    WriteOutput(options.output, [&](std::ostream &out) { Writers.at(format)(out, waveform, options.width); });
}

}  // namespace

void AddPlayCommand(CLI::App &app)
{
    CLI::App *command = app.add_subcommand("play", "Walk a stimulus and write its changes");
    const auto options = std::make_shared<SPlayOptions>();
    command->add_option("formula", options->formula, "What to play")->required();
    AddTimeOptions(*command, options->resolution, options->start);
    command
        ->add_option("--until", options->until,
                     "Where to end (default: where the stimulator ends, else after 40 changes)")
        ->type_name("TIME");
    command->add_option("--format", options->format, "Default: table on a terminal, csv elsewhere")
        ->check(CLI::IsMember({"table", "csv", "json", "vcd", "svg", "wave"}));
    command->add_option("-o,--output", options->output, "Write to a file, whole or not at all")->type_name("FILE");
    command->add_option("--width", options->width, "Of a picture, in pixels (svg) or columns (wave)")
        ->check(CLI::Range(40, 100000));
    command->footer("Example: tesk play \"1 10ns, 0 20ns -r 30ns -cancel 100ns\" --format wave");
    command->callback([options] { Play(*options); });
}
