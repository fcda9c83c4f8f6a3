// tesk split: one formula for each element of a composite signal.
#include <cstdio>
#include <ostream>
#include <string_view>
#include <vector>

#include "core/simpleformulaparser.h"
#include "core/tokenizer.h"
#include "tools/commands.h"
#include "tools/formula.h"
#include "tools/output.h"
#include "tools/quote.h"
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

using CElements = std::vector<SimpleString::CStr>;

int SplitFormula(const SSplitOptions &options, const std::string &formula, long long start, CElements &elements)
{
    return CSimpleFormulaParser().Run(formula.c_str(), elements, static_cast<int>(options.count), !options.aggregate,
                                      g_simRes, start);
}

// The first part between commas that is refused by itself, as "part 2, "..."": switches alone are always refused.
std::string FindRefusedPart(const SSplitOptions &options, long long start)
{
    std::string_view rest = options.formula;
    for (int number = 1; !rest.empty(); ++number) {
        const std::string part = TakeChunk(rest, ",", ParserOpen, ParserClose, TokenBlanks, EJoin::BetweenTokens);
        CElements unused;
        if (!part.starts_with('-') && SplitFormula(options, part, start, unused) == 0)
            return "part " + std::to_string(number) + ", " + Quote(part);
    }
    return Quote(options.formula);
}

std::string Advice(const SSplitOptions &options)
{
    if (options.aggregate)
        return "write values such as \"(1, 0, 1) 5ns\"";
    return "write values of at most " + std::to_string(options.count) +
           " characters, or use --aggregate for values such as \"(1, 0, 1) 5ns\"";
}

int Split(const SSplitOptions &options)
{
    const long long resolution = ReadResolution(options.resolution);
    const long long start = options.start.empty() ? 0 : ReadTimeOption("--start", options.start, resolution);
    CreateStimulus(options.formula, start, resolution);  // says what is wrong with the formula as a whole

    CElements elements;
    const int result = SplitFormula(options, options.formula, start, elements);
    if (result == 0)
        throw CRefusal("formula: " + FindRefusedPart(options, start) + ", cannot be split into " +
                       std::to_string(options.count) + " elements; " + Advice(options));
    if (result == -1)
        std::fprintf(stderr, "tesk: warning: a value is too long for %lld elements and lost its leading bits\n",
                     options.count);
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
