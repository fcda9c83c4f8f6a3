// tesk split: one formula for each element of a composite signal.
#include <memory>
#include <ostream>
#include <string>

#include "tools/commands/commands.h"
#include "tools/examine/explained.h"
#include "tools/output.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"
#include "tools/play/playedsignal.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace {

constexpr long long MostElements = 1 << 24;

struct SSplitOptions {
    std::string formula;
    long long count = 0;
    std::string type;
    bool aggregate = false;
    bool isStrict = false;
    std::string resolution = "1ps";
    std::string start;
};

// The composite signal for which the formula is meant.
struct STarget {
    long long count;
    bool isBitVector;
    std::string description;  // of its type; empty if only the number of elements is known
};

STarget DescribeTarget(const SSplitOptions &options)
{
    if (options.type.empty() && options.count == 0)
        throw CWrongUsage("--count or --type is required; they tell how many elements there are");
    if (options.type.empty() && !IsFileFormula(options.formula))
        return {options.count, !options.aggregate, ""};
    const SPlayedSignal signal = DescribeSignal(options.type, options.count);
    if (signal.elements.empty())
        throw CRefusal("type " + Quote(options.type) +
                       ": it has no elements; give one such as std_logic_vector(7 downto 0)");
    IStimulus::SetupAdditionalInfo(SignalName, signal.description.c_str());
    const auto count = static_cast<long long>(signal.elements.size());
    return {options.count != 0 ? options.count : count, signal.isBitVector && !options.aggregate,
            options.type.empty() ? "" : signal.description};
}

int Split(const SSplitOptions &options)
{
    const long long resolution = ReadResolution(options.resolution);
    const long long start = options.start.empty() ? 0 : ReadTimeOption("--start", options.start, resolution);
    const STarget target = DescribeTarget(options);
    const CSimulationRun run;
    const tesk::CExamined examined({options.formula, target.description, resolution, start});
    if (options.isStrict && examined.HasError()) {
        examined.Tell();
        return 1;
    }
    const auto elements = examined.Explain(
        [&] { return SplitFormula(options.formula, target.count, target.isBitVector, start, resolution); });
    examined.Tell();
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
    command.Number("--count", options->count, 1, MostElements, "Number of elements, the leftmost first");
    command.Option("--type", options->type, "TYPE", "Type of the signal, such as std_logic_vector(7 downto 0)");
    command.Flag("--aggregate", options->aggregate,
                 "Values are aggregates such as \"(1, 0, 1)\", not bit strings such as 101");
    command.Flag("--strict", options->isStrict,
                 "Write nothing, with status 1, if the formula cannot mean what it says");
    AddTimeOptions(command, options->resolution, options->start);
    command.Footer("An element without an event gets an empty line.\n"
                   "Example: tesk split \"0110 0ns, 1001 10ns -r 20ns\" --count 4");
    command.Action([options] { return Split(*options); });
}
