// tesk clock: the formula of a clock described by options.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>
#include <memory>
#include <string>

#include "platform/crt.h"
#include "settings/clock.h"
#include "settings/timeunits.h"
#include "tools/commands/commands.h"
#include "tools/timetext.h"

namespace {

constexpr long long Femtosecond = 1;  // as a resolution
constexpr unsigned FrequencyUnitCount = 4;

struct SClockOptions {
    std::string frequency;
    std::string period;
    std::string duty = "50";
    std::string offset = "0";
    bool startLow = false;
};

unsigned char ReadFrequencyUnit(const std::string &text, const std::string &name)
{
    for (unsigned unit = 0; unit < FrequencyUnitCount; ++unit) {
        if (_stricmp(name.c_str(), tesk::GetFreqUnitName(unit)) == 0)
            return static_cast<unsigned char>(unit);
    }
    RefuseOption("--freq", text, "unknown frequency unit \"" + name + "\"; use Hz, kHz, MHz or GHz");
}

void SetFrequency(CClock &clock, const std::string &text)
{
    double value = 0.0;
    const char *const end = text.data() + text.size();
    const auto [numberEnd, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || !std::isfinite(value) || value <= 0)
        RefuseOption("--freq", text, "no frequency above 0; write a number and a unit, such as 100MHz");
    const std::string rest(numberEnd, end);
    const std::string unit = rest.substr(std::min(rest.find_first_not_of(" \t"), rest.size()));
    clock.SetRateType(false);
    clock.SetRateValue(value);
    clock.SetRateUnit(ReadFrequencyUnit(text, unit));
}

void SetPeriod(CClock &clock, const std::string &text)
{
    const long long period = ReadTimeOption("--period", text, Femtosecond);
    const int unit = period > 0 ? CoarsestWholeUnit(period) : 0;
    clock.SetRateType(true);
    clock.SetRateValue(static_cast<double>(period / static_cast<long long>(UnitLength(unit))));
    clock.SetRateUnit(static_cast<unsigned char>(unit));
}

unsigned char ReadDuty(const std::string &text)
{
    int duty = 0;
    const char *const end = text.data() + text.size();
    const auto [numberEnd, error] = std::from_chars(text.data(), end, duty);
    if (error != std::errc() || numberEnd != end || duty < 1 || duty > 99)
        RefuseOption("--duty", text, "no duty cycle; write a whole number of percent, 1 to 99");
    return static_cast<unsigned char>(duty);
}

// The period in `unit`, which it sets to the coarsest one in which the period is whole.
double PeriodOf(const CClock &clock, int &unit)
{
    unit = clock.GetRateUnit();
    const unsigned id = clock.GetRateUnit();
    double period = clock.GetRateType() ? clock.GetRateValue() : tesk::PeriodFromFreq(clock.GetRateValue(), id, id);
    tesk::ScaleNumberNoFloat(&period, &unit);
    return period;
}

// A formula counts whole femtoseconds, up to 2^63 of them.
void CheckRate(const std::string &option, const std::string &text, double femtoseconds, unsigned char duty)
{
    const double firstLevel = std::trunc(duty * femtoseconds * 0.01);
    if (firstLevel < 1 || firstLevel >= std::trunc(femtoseconds))
        RefuseOption(option, text, "too fast; each level of the clock must last 1 fs at least");
    if (femtoseconds >= 9.2e18)
        RefuseOption(option, text, "too slow; a period may have 9.2e18 fs at most, about 2.5 hr");
}

int WriteClock(const SClockOptions &options)
{
    if (options.frequency.empty() == options.period.empty())
        throw CWrongUsage("clock: give one of --freq, such as 100MHz, and --period, such as 10ns");
    CClock clock;
    if (options.period.empty())
        SetFrequency(clock, options.frequency);
    else
        SetPeriod(clock, options.period);
    clock.SetRateCycle(ReadDuty(options.duty));
    clock.SetStartLow(options.startLow);

    int unit = 0;
    const double period = PeriodOf(clock, unit);
    CheckRate(options.period.empty() ? "--freq" : "--period", options.frequency + options.period,
              tesk::ChangeTime(period, static_cast<unsigned>(unit), 0), clock.GetRateCycle());

    // The offset counts in the unit of the formula: one in which both it and, if possible, the period are whole.
    const long long offset = ReadTimeOption("--offset", options.offset, Femtosecond);
    if (offset != 0)
        unit = std::min(unit, CoarsestWholeUnit(offset));
    clock.SetRateOffset(offset / static_cast<long long>(UnitLength(unit)));
    SimpleString::CStr formula;
    clock.GenerateFormula(formula, unit, nullptr);
    std::cout << formula << '\n';
    return 0;
}

}  // namespace

void AddClockCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("clock", "Write the formula of a clock");
    const auto options = std::make_shared<SClockOptions>();
    command.Option("--freq", options->frequency, "FREQUENCY", "Frequency in Hz, kHz, MHz or GHz");
    command.Option("--period", options->period, "TIME", "Period, instead of a frequency");
    command.Option("--duty", options->duty, "PERCENT",
                   "How long the first level lasts, in percent of the period (default 50)");
    command.Option("--offset", options->offset, "TIME", "Time of the first edge (default 0)");
    command.Flag("--start-low", options->startLow, "Begin with 0 instead of 1");
    command.Footer("Example: tesk clock --freq 100MHz --duty 30 --start-low\n"
                   "writes:  0 0 ns, 1 3 ns -r 10 ns");
    command.Action([options] { return WriteClock(*options); });
}
