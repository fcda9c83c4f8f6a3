#include "tools/writers/formats.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <vector>

#include "tools/commandline.h"
#include "tools/examine/nearname.h"
#include "tools/message.h"
#include "tools/output.h"
#include "tools/writers/writers.h"

namespace tesk {

namespace {

int UsualPixels()
{
    return 900;
}

constexpr SOutputFormat Formats[] = {
    {"table", "txt", false, true, [](std::ostream &out, const SWaveform &waveform, int) { WriteTable(out, waveform); },
     nullptr},
    {"csv", "csv", false, true, [](std::ostream &out, const SWaveform &waveform, int) { WriteCsv(out, waveform); },
     nullptr},
    {"json", "json", false, true, [](std::ostream &out, const SWaveform &waveform, int) { WriteJson(out, waveform); },
     nullptr},
    {"vcd", "vcd", false, false, [](std::ostream &out, const SWaveform &waveform, int) { WriteVcd(out, waveform); },
     nullptr},
    {"fst", "fst", true, false,
     [](std::ostream &out, const SWaveform &waveform, int) { WriteFstWaveform(out, waveform); }, nullptr},
    {"svg", "svg", false, true,
     [](std::ostream &out, const SWaveform &waveform, int width) {
         WriteSvg(out, waveform, width != 0 ? width : UsualPixels());
     },
     UsualPixels},
    {"wave", "", false, true,
     [](std::ostream &out, const SWaveform &waveform, int width) {
         WriteWave(out, waveform, width != 0 ? width : TerminalWidth());
     },
     TerminalWidth},
};

const SOutputFormat &FormatNamed(const std::string &name)
{
    const auto found = std::ranges::find(Formats, name, &SOutputFormat::name);
    return found != std::end(Formats) ? *found : Formats[0];
}

// An ending that tells no format, and may be meant for one that does.
void WarnOfNearEnding(const std::string &ending)
{
    std::vector<std::string> endings;
    for (const SOutputFormat &format : Formats)
        endings.emplace_back(format.ending);
    const std::string near = FindNearName(ending, endings);
    if (!near.empty())
        TellWarning("the ending ." + ending + " tells no format (did you mean ." + near +
                    "?); csv is written; --format chooses another");
}

}  // namespace

void RefuseBinaryOnTerminal(const SOutputFormat &format, const std::string &path)
{
    if (format.isBinary && IsTerminal() && (path.empty() || path == "-"))
        throw CRefusal(std::string(format.name) + " is nothing for a terminal; give it a file with -o FILE");
}

std::set<std::string> OutputFormatNames()
{
    std::set<std::string> names;
    for (const SOutputFormat &format : Formats)
        names.insert(format.name);
    return names;
}

const SOutputFormat &FindOutputFormat(const std::string &name, const std::string &path)
{
    if (!name.empty())
        return FormatNamed(name);
    std::string ending = std::filesystem::path(path).extension().string();
    ending.erase(0, 1);  // the point
    std::ranges::transform(ending, ending.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto found = std::ranges::find(Formats, ending, &SOutputFormat::ending);
    if (found != std::end(Formats) && !ending.empty())
        return *found;
    WarnOfNearEnding(ending);
    return FormatNamed(IsTerminal() && (path.empty() || path == "-") ? "table" : "csv");
}

}  // namespace tesk
