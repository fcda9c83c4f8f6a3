#include "tools/timetext.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include "settings/timeunits.h"
#include "tools/commandline.h"
#include "tools/message.h"
#include "tools/quote.h"

namespace {

constexpr int SecondsUnit = tesk::TimeUnit::Seconds;

std::string Digits(Int128 number)
{
    if (number < 0)
        return "-" + Digits(-number);
    std::string digits;
    do {
        digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(number % 10)));
        number /= 10;
    } while (number != 0);
    return digits;
}

// The number that an option's time begins with, and the text behind it.
double ReadNumber(const std::string &option, const std::string &text, std::string &rest)
{
    const std::size_t end = std::min(text.find_first_not_of("0123456789."), text.size());
    const std::string number = text.substr(0, end);
    if (number.find_first_of("0123456789") == std::string::npos || std::ranges::count(number, '.') > 1)
        RefuseOption(option, text, "no time of 0 or later; write a number and a unit, such as 10ns or 1.5us");
    rest = text.substr(std::min(text.find_first_not_of(" \t", end), text.size()));
    double value = 0;
    const bool isInRange = std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc();
    const bool isLarge = number.find_first_not_of("0.") < number.find('.');
    return isInRange ? value : isLarge ? std::numeric_limits<double>::infinity() : 0;
}

}  // namespace

Int128 UnitLength(int unit)
{
    return tesk::ChangeTime2(1, static_cast<unsigned>(unit), 0);
}

int CoarsestWholeUnit(Int128 femtoseconds)
{
    int unit = 0;
    while (unit < SecondsUnit && femtoseconds % UnitLength(unit + 1) == 0)
        ++unit;
    return unit;
}

std::string TimeText(Int128 femtoseconds, int zeroUnit)
{
    const int unit = femtoseconds == 0 ? zeroUnit : CoarsestWholeUnit(femtoseconds);
    return Digits(femtoseconds / UnitLength(unit)) + tesk::UnitNameFromID(static_cast<unsigned>(unit));
}

std::string TickText(long long ticks, long long resolution)
{
    return TimeText(static_cast<Int128>(ticks) * resolution, CoarsestWholeUnit(resolution));
}

std::string FileTimeText(long long ticks, long long resolution)
{
    const int unit = CoarsestWholeUnit(resolution);
    return Digits(static_cast<Int128>(ticks) * resolution / UnitLength(unit)) +
           tesk::UnitNameFromID(static_cast<unsigned>(unit));
}

long long ReadTimeOption(const std::string &option, const std::string &text, long long resolution)
{
    std::string unitName;
    const double number = ReadNumber(option, text, unitName);
    const int unit = unitName.empty() ? 1 : tesk::UnitIDFromName(unitName.c_str());
    if (unit < 0)
        RefuseOption(option, text, "unknown time unit " + Quote(unitName) + "; use fs, ps, ns, us, ms, sec, min or hr");
    if (tesk::ChangeTime(number, static_cast<unsigned>(unit), 0) >= 9.2e18)
        RefuseOption(option, text, "too long; a time may have 9.2e18 fs at most, about 2.5 hr");
    if (unitName.empty() && number != 0)
        TellWarning(option + ' ' + Shorten(text) + " has no unit, and counts picoseconds");
    STimeValue time;
    time.SetFromValue(number, unit, unit, resolution);
    return time.m_ticks;
}

long long ReadResolution(const std::string &text)
{
    const long long resolution = ReadTimeOption("--res", text, 1);
    if (resolution < 1)
        RefuseOption("--res", text, "shorter than 1fs, the finest resolution");
    return resolution;
}
