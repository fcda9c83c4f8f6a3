// tesk view: draws recorded signals.
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/files/selectedfile.h"
#include "tools/files/wavefile.h"
#include "tools/help/commandtable.h"
#include "tools/output.h"
#include "tools/quote.h"
#include "tools/timetext.h"
#include "tools/view/recordedwaveform.h"
#include "tools/writers/formats.h"
#include "tools/writers/valuetext.h"

namespace {

using tesk::IWaveformFile;

struct SViewOptions {
    std::string file;
    std::vector<std::string> globs;
    std::string from;
    std::string until;
    std::string radix = "hex";
    long long limit = 64;
    std::string format;
    std::string output;
    long long width = 0;
};

// A picture where nothing else is asked for, neither by name nor by the ending of the output.
const tesk::SOutputFormat &FormatOf(const SViewOptions &options)
{
    const bool isFile = !options.output.empty() && options.output != "-";
    return tesk::FindOutputFormat(options.format.empty() && !isFile ? "wave" : options.format, options.output);
}

// The end that is told, else that of the file, and a little more: a picture shows what the last change led to.
long long EndOf(const SViewOptions &options, const tesk::SSelection &stretch, IWaveformFile &file)
{
    if (stretch.until)
        return *stretch.until;
    const long long end = file.GetEndTime();
    const long long from = stretch.from.value_or(0);
    if (from > end)
        RefuseOption("--from", options.from, "the file ends at " + TickText(end, file.GetResolution()));
    return end + std::max((end - from) / 40, 1LL);
}

std::vector<tesk::SRecordedSignal> ViewedSignals(const SViewOptions &options, IWaveformFile &file)
{
    const auto &signals = file.GetSignals();
    const std::size_t count = std::min(signals.size(), static_cast<std::size_t>(options.limit));
    if (count < signals.size())
        std::fprintf(stderr, "tesk: the first %zu of %zu signals are shown; name others, or give --limit %zu\n", count,
                     signals.size(), signals.size());
    std::vector<tesk::SRecordedSignal> viewed;
    for (std::size_t i = 0; i < count; ++i)
        viewed.push_back({&file, signals[i], signals[i].path});
    return viewed;
}

int View(const SViewOptions &options)
{
    const tesk::SOutputFormat &format = FormatOf(options);
    tesk::RefuseBinaryOnTerminal(format, options.output);
    std::unique_ptr<IWaveformFile> whole = OpenWaveFile(options.file);
    tesk::SSelection stretch;
    tesk::ReadStretch(options.from, options.until, whole->GetResolution(), stretch);
    const std::unique_ptr<IWaveformFile> file = tesk::Select(std::move(whole), options.file, {options.globs, {}, {}});

    const tesk::ERadix radix = tesk::RadixOf(options.radix).value_or(tesk::ERadix::Hexadecimal);
    tesk::SRecordedWindow window;
    window.resolution = file->GetResolution();
    window.from = stretch.from.value_or(0);
    window.until = EndOf(options, stretch, *file);
    window.points = 2 * static_cast<std::size_t>(format.PictureWidth(static_cast<int>(options.width)));
    window.isAnalog = radix == tesk::ERadix::Analog || radix == tesk::ERadix::AnalogSigned;
    SWaveform waveform = tesk::RecordedWaveform(ViewedSignals(options, *file), window, options.file);
    if (format.showsRadix)
        tesk::ShowInRadix(waveform, radix);
    tesk::DrawRealsAsCurves(waveform);
    WriteOutput(options.output,
                [&](std::ostream &out) { format.write(out, waveform, static_cast<int>(options.width)); });
    return 0;
}

}  // namespace

void AddViewCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("view", "Draw recorded signals of a VCD, FST, GHW or event-stream file");
    const auto options = std::make_shared<SViewOptions>();
    command.Argument("file", options->file, "The file; its contents tell what it is. - is standard input");
    command.Arguments("glob", options->globs, "Signals to draw, such as \"tb.*\"; * crosses dots (default: all)");
    command.Option("--from", options->from, "TIME", "Where to begin, with the values in force there");
    command.Option("--until", options->until, "TIME", "Where to end (default: with the file)");
    command.Choice("--radix", options->radix, tesk::RadixNames(),
                   "How the values of buses are shown, but in a dump (default hex); analog draws curves");
    command.Number("--limit", options->limit, 1, 1000000, "Signals to draw at most (default 64)");
    command.Choice("--format", options->format, tesk::OutputFormatNames(),
                   "Default: by the ending of the output, else wave");
    command.Option("-o,--output", options->output, "FILE",
                   "Write to a file, whole or not at all; - is standard output");
    command.Number("--width", options->width, 40, 100000, "Of a picture, in pixels (svg) or columns (wave)");
    command.Footer("Of a picture no more is kept than it shows, however long the file is.\n"
                   "Example: tesk view waves.fst \"tb.dut.*\" --from 1us --until 2us");
    command.Action([options] { return View(*options); });
}
