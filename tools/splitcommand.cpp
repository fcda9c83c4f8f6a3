// tesk split: one formula for each element of a composite signal.
#include <ostream>

#include "tools/commands.h"
#include "tools/formula.h"
#include "tools/output.h"
#include "tools/timetext.h"

namespace {

constexpr long long MostElements = 1 << 24;

struct SSplitOptions {
    std::string formula;
    long long count = 0;
    bool aggregate = false;
    std::string resolution = "1ps";
    std::string start;
};

int Split(const SSplitOptions &options)
{
    const long long resolution = ReadResolution(options.resolution);
    const long long start = options.start.empty() ? 0 : ReadTimeOption("--start", options.start, resolution);
    const auto elements = SplitFormula(options.formula, options.count, !options.aggregate, start, resolution);
    WriteOutput({}, [&](std::ostream &out) {
        for (const SimpleString::CStr &element : elements)
            out << element << '\n';
    });
    return 0;
}

}  // namespace

void AddSplitCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("split", "Write one formula for each element of a composite signal");
    const auto options = std::make_shared<SSplitOptions>();
    command.Argument("formula", options->formula, "What to split");
    command.RequiredNumber("--count", options->count, 1, MostElements, "Number of elements, the leftmost first");
    command.Flag("--aggregate", options->aggregate,
                 "Values are aggregates such as \"(1, 0, 1)\", not bit strings such as 101");
    AddTimeOptions(command, options->resolution, options->start);
    command.Footer("An element without an event gets an empty line.\n"
                   "Example: tesk split \"0110 0ns, 1001 10ns -r 20ns\" --count 4");
    command.Action([options] { return Split(*options); });
}
