// tesk convert: a waveform file in another format.
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/files/selectedfile.h"
#include "tools/files/streamimport.h"
#include "tools/files/wavefile.h"
#include "tools/files/waveoutput.h"
#include "tools/output.h"
#include "tools/quote.h"

using tesk::EFileKind;

namespace {

struct SConvertOptions {
    std::string input;
    std::string output;
    std::vector<std::string> globs;
    std::string from;
    std::string until;
    std::string format;
};

const std::map<std::string, EFileKind> Formats = {
    {"stream", EFileKind::Stream}, {"vcd", EFileKind::Vcd}, {"fst", EFileKind::Database}};

// The format asked for, else that which the name of the file stands for.
EFileKind OutputKind(const SConvertOptions &options)
{
    if (!options.format.empty())
        return Formats.at(options.format);
    if (options.output == "-")
        return EFileKind::Vcd;
    if (options.output.ends_with(".fst"))
        return EFileKind::Database;
    const EFileKind kind = tesk::KindOfName(options.output);
    if (kind == EFileKind::Database)
        throw CRefusal(OneLine(options.output) +
                       ": its name tells no format that can be written; end it in .zyn for an event "
                       "stream, in .vcd or in .fst, or use --format");
    return kind;
}

int Convert(const SConvertOptions &options)
{
    const EFileKind kind = OutputKind(options);
    const bool toStream = kind == EFileKind::Stream;
    if (kind != EFileKind::Vcd && options.output == "-")
        throw CRefusal("standard output takes a VCD only; give an event stream or an FST a file");
    const bool isWhole = options.globs.empty() && options.from.empty() && options.until.empty();
    if (toStream && isWhole && KindOfFile(options.input) == EFileKind::Stream)
        throw CRefusal(OneLine(options.input) + ": is an event stream already; it can be converted to VCD and FST");
    if (toStream && isWhole && KindOfFile(options.input) == EFileKind::Vcd) {
        ImportEventStream(options.input, options.output);
        return 0;
    }
    std::unique_ptr<tesk::IWaveformFile> whole = OpenWaveFile(options.input);
    tesk::SSelection selection{options.globs, {}, {}, true};
    tesk::ReadStretch(options.from, options.until, whole->GetResolution(), selection);
    const std::unique_ptr<tesk::IWaveformFile> file = tesk::Select(std::move(whole), options.input, selection);
    if (toStream) {
        WriteEventStream(options.output, *file);
        return 0;
    }
    const auto write = kind == EFileKind::Vcd ? WriteWaveDump : WriteFst;
    WriteOutput(options.output == "-" ? "" : options.output, [&](std::ostream &out) { write(out, *file); });
    return 0;
}

}  // namespace

void AddConvertCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("convert", "Make an event stream, a VCD or an FST of a waveform file");
    const auto options = std::make_shared<SConvertOptions>();
    command.Argument("input", options->input,
                     "VCD, FST, GHW or event stream; its contents tell what it is. - is standard input");
    command.Argument("output", options->output, "What to write, whole or not at all; \"-\" is standard output");
    command.Arguments("glob", options->globs, "Signals to take, such as \"tb.*\"; * crosses dots (default: all)");
    command.Option("--from", options->from, "TIME", "Where to begin, with the values in force there");
    command.Option("--until", options->until, "TIME", "Where to end");
    command.Choice("--format", options->format, {"stream", "vcd", "fst"},
                   "Default: by the name of the output, .zyn or .tmp for a stream, .vcd, .fst; vcd on standard output");
    command.Footer("From an event stream one signal is read without the others. Viewers read VCD and FST.\n"
                   "Example: tesk convert waves.fst waves.zyn");
    command.Action([options] { return Convert(*options); });
}
