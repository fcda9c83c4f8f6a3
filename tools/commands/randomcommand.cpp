// tesk random: the formula of a random stimulator described by options.
#include <algorithm>
#include <climits>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "settings/random.h"
#include "tools/commands/commands.h"
#include "tools/commands/periodoption.h"
#include "tools/timetext.h"

namespace {

using CInfo = tesk::CRandomStimulusInfo;

// Parameters in the order in which the help shows them.
struct SParameter {
    const char *option;
    const char *help;
};
constexpr SParameter Parameters[] = {
    {"--low", "Lowest value (uniform)"},
    {"--high", "Highest value (uniform)"},
    {"--mean", "Mean (normal, exponential, poisson, erlang)"},
    {"--deviation", "Standard deviation (normal)"},
    {"--degrees", "Degrees of freedom (chi-square, t)"},
    {"--order", "Order (erlang)"},
};

struct SDistribution {
    std::vector<std::string> options;
    bool (*store)(CInfo &info, int seed, int first, int second);
};
const std::map<std::string, SDistribution> Distributions = {
    {"uniform",
     {{"--low", "--high"},
      [](CInfo &info, int seed, int low, int high) { return info.SetUniformParameters(seed, low, high); }}},
    {"normal",
     {{"--mean", "--deviation"},
      [](CInfo &info, int seed, int mean, int deviation) { return info.SetNormalParameters(seed, mean, deviation); }}},
    {"exponential",
     {{"--mean"}, [](CInfo &info, int seed, int mean, int) { return info.SetExpotentialParameters(seed, mean); }}},
    {"poisson",
     {{"--mean"}, [](CInfo &info, int seed, int mean, int) { return info.SetPoissonParameters(seed, mean); }}},
    {"chi-square",
     {{"--degrees"},
      [](CInfo &info, int seed, int degrees, int) { return info.SetChiSquareParameters(seed, degrees); }}},
    {"t", {{"--degrees"}, [](CInfo &info, int seed, int degrees, int) { return info.SetTParameters(seed, degrees); }}},
    {"erlang",
     {{"--mean", "--order"},
      [](CInfo &info, int seed, int mean, int order) { return info.SetErlangParameters(seed, mean, order); }}},
    {"full-range", {{}, [](CInfo &info, int seed, int, int) { return info.SetRandomParameters(seed); }}},
};

struct SRandomOptions {
    std::string distribution = "uniform";
    std::string period;
    long long seed = 0;
    std::map<std::string, long long> values;  // by option
};

std::string Listed(const std::vector<std::string> &options)
{
    std::string list;
    for (const std::string &option : options)
        list += (list.empty() ? "" : " and ") + option;
    return list.empty() ? "no parameter" : list;
}

// A distribution needs all of its own parameters and no others.
void CheckParameters(const CCommand &command, const std::string &name, const SDistribution &distribution)
{
    for (const SParameter &parameter : Parameters) {
        const bool isNeeded = std::ranges::count(distribution.options, parameter.option) != 0;
        if (command.Has(parameter.option) != isNeeded)
            throw CWrongUsage("--dist " + name + " takes " + Listed(distribution.options) + "; " + parameter.option +
                              (isNeeded ? " is missing" : " does not belong to it"));
    }
}

// @return the value of the distribution's parameter at `index`, 0 if it has none
int ValueAt(const SRandomOptions &options, const SDistribution &distribution, std::size_t index)
{
    return index < distribution.options.size() ? static_cast<int>(options.values.at(distribution.options[index])) : 0;
}

int WriteRandom(const CCommand &command, const SRandomOptions &options)
{
    const SDistribution &distribution = Distributions.at(options.distribution);
    CheckParameters(command, options.distribution, distribution);
    CInfo info;
    if (!distribution.store(info, static_cast<int>(options.seed), ValueAt(options, distribution, 0),
                            ValueAt(options, distribution, 1))) {
        // Only the last parameter is ever refused, for being below 1.
        const std::string &option = distribution.options.back();
        RefuseOption(option, std::to_string(options.values.at(option)),
                     "too small for --dist " + options.distribution + "; give 1 or more");
    }
    const long long period = ReadPeriodOption(options.period);
    const int unit = CoarsestWholeUnit(period);
    info.SetPeriod(static_cast<double>(period) / static_cast<double>(UnitLength(unit)), unit);
    SimpleString::CStr formula;
    info.GenerateInternalFormula(formula);
    std::cout << formula << '\n';
    return 0;
}

std::set<std::string> DistributionNames()
{
    std::set<std::string> names;
    for (const auto &distribution : Distributions)
        names.insert(distribution.first);
    return names;
}

}  // namespace

void AddRandomCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("random", "Write the formula of a random stimulator");
    const auto options = std::make_shared<SRandomOptions>();
    command.Choice("--dist", options->distribution, DistributionNames(),
                   "Distribution of the values (default uniform)");
    for (const SParameter &parameter : Parameters)
        command.Number(parameter.option, options->values[parameter.option], INT_MIN, INT_MAX, parameter.help);
    command.Number("--seed", options->seed, INT_MIN, INT_MAX, "Seed, as of Verilog's $random and $dist_...");
    command.RequiredOption("--period", options->period, "TIME", "Time between two values");
    command.Footer("Example: tesk random --dist normal --mean 100 --deviation 15 --seed 5 --period 10ns\n"
                   "writes:  \\RANDOM\\2\\5\\100\\15\\10.000000ns");
    command.Action([command, options] { return WriteRandom(command, *options); });
}
