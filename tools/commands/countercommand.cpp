// tesk counter: the formula of a counter described by options.
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "settings/bitvector.h"
#include "settings/counter.h"
#include "settings/longnumber.h"
#include "tools/commands/commands.h"
#include "tools/commands/periodoption.h"
#include "tools/timetext.h"

namespace {

using CInfo = tesk::CCounterStimulusInfo;

const std::map<std::string, CInfo::Type> Types = {
    {"binary", CInfo::CounterBinary},
    {"gray", CInfo::CounterGray},
    {"johnson", CInfo::CounterJohnson},
    {"circular-one", CInfo::CounterCircularOne},
    {"circular-zero", CInfo::CounterCircularZero},
};

struct SCounterOptions {
    std::string type = "binary";
    long long width = 8;
    std::string start;
    std::string increment = "1";
    std::string radix = "10";
    std::string period;
    bool down = false;
    bool reverse = false;
};

unsigned Width(const SCounterOptions &options)
{
    return static_cast<unsigned>(options.width);
}

int Radix(const SCounterOptions &options)
{
    return std::stoi(options.radix);
}

CBitVector ReadNumber(const SCounterOptions &options, const std::string &option, const std::string &text)
{
    const unsigned radix = static_cast<unsigned>(Radix(options));
    const CBitVector number(Width(options), text.c_str(), radix);
    if (text.empty() || number.GetWidth() == 0)
        RefuseOption(option, text,
                     "no number in radix " + options.radix + "; use its digits, or a radix such as in 16#ff");
    std::string bits;
    if (!CLongNumber(text.c_str(), radix).ToBinaryText(bits, static_cast<int>(options.width), false))
        RefuseOption(option, text, "more than " + std::to_string(options.width) + " bits; give a larger --width");
    return number;
}

// Where a counter starts unless told: at 0, or with bit 0 as the odd one that walks.
std::string DefaultStart(const SCounterOptions &options)
{
    switch (Types.at(options.type)) {
    case CInfo::CounterCircularOne: return "1";
    case CInfo::CounterCircularZero: return "2#" + std::string(Width(options) - 1, '1') + "0";
    default: return "0";
    }
}

void CheckOneHot(const SCounterOptions &options, const std::string &start, CBitVector number)
{
    const CInfo::Type type = Types.at(options.type);
    if (type != CInfo::CounterCircularOne && type != CInfo::CounterCircularZero)
        return;
    const bool ones = type == CInfo::CounterCircularOne;
    if (!number.CheckOneHot(ones))
        RefuseOption("--start", start,
                     "no start of a " + options.type + " counter; of its " + std::to_string(options.width) +
                         " bits exactly one must be " + (ones ? "1" : "0"));
}

int WriteCounter(const SCounterOptions &options)
{
    const std::string start = options.start.empty() ? DefaultStart(options) : options.start;
    CheckOneHot(options, start, ReadNumber(options, "--start", start));
    ReadNumber(options, "--inc", options.increment);

    CInfo info;
    info.SetType(Types.at(options.type));
    info.SetDir(options.down ? CInfo::DirDown : CInfo::DirUp);
    info.SetDisplayRadix(Radix(options));
    info.SetStartingValue(start.c_str());
    info.SetIncrementBy(options.increment.c_str());
    info.SetCountPeriod(TimeText(ReadPeriodOption(options.period)).c_str());
    info.SetReverseBitOrder(options.reverse);

    constexpr std::size_t RoomForTheRest = 200;
    std::vector<char> formula(start.size() + options.increment.size() + RoomForTheRest);
    info.GenerateFormula(formula.data(), static_cast<unsigned>(formula.size()));
    std::cout << formula.data() << '\n';
    return 0;
}

std::set<std::string> TypeNames()
{
    std::set<std::string> names;
    for (const auto &type : Types)
        names.insert(type.first);
    return names;
}

}  // namespace

void AddCounterCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("counter", "Write the formula of a counter");
    const auto options = std::make_shared<SCounterOptions>();
    command.Choice("--type", options->type, TypeNames(), "Counting sequence (default binary)");
    command.Number("--width", options->width, 1, 1000000,
                   "Bits of the signal, for which the values are checked (default 8)");
    command.Option("--start", options->start, "VALUE",
                   "First value (default 0, of a circular counter the one with an odd bit 0)");
    command.Option("--inc", options->increment, "VALUE", "What a binary or gray counter adds (default 1)");
    command.Choice("--radix", options->radix, {"2", "8", "10", "16"}, "Radix of the two values (default 10)");
    command.RequiredOption("--period", options->period, "TIME", "Time between two counts");
    command.Flag("--down", options->down, "Count downward");
    command.Flag("--reverse", options->reverse, "Mirror the bits of every value but the first");
    command.Footer("Example: tesk counter --type gray --width 8 --start 0 --inc 1 --period 10ns\n"
                   "writes:  \\counter\\TYPE\\2\\DIR\\1\\RADIX\\10\\START\\0\\INC\\1\\PERIOD\\10ns\\REV\\0");
    command.Action([options] { return WriteCounter(*options); });
}
