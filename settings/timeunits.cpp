#include "settings/timeunits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "base/ascii.h"
#include "base/wrap.h"
#include "platform/crt.h"

namespace tesk {

namespace {

constexpr unsigned UnknownUnit = 0xFFFFFFFF;
using TimeUnit::Seconds;

struct STimeUnit {
    const char *name;
    int step;  // factor to the next coarser unit
};

constexpr std::array<STimeUnit, 8> TimeUnits = {
    {{"fs", 1000}, {"ps", 1000}, {"ns", 1000}, {"us", 1000}, {"ms", 1000}, {"sec", 60}, {"min", 60}, {"hr", 1}}};
constexpr std::array<const char *, 4> FrequencyUnits = {"Hz", "kHz", "MHz", "GHz"};

constexpr int FirstUnnamed = static_cast<int>(TimeUnits.size());
constexpr std::size_t LongestTime = 127;

bool IsTimeUnit(unsigned id)
{
    return id < TimeUnits.size();
}

int Step(unsigned id)
{
    return TimeUnits[id].step;
}

// The factor between two units, the finer one first.
template <typename T>
T Factor(unsigned finer, unsigned coarser)
{
    T factor = 1;
    for (unsigned id = finer; id < coarser; ++id)
        factor *= static_cast<T>(Step(id));
    return factor;
}

const char *SkipSpace(const char *text)
{
    while (IsSpace(*text))
        ++text;
    return text;
}

bool IsNumberPart(char c)
{
    return IsDigit(c) || c == '.' || c == '-';
}

// The digits of [begin, end) but for the one at `point`, as one integer.
double Mantissa(const char *begin, const char *end, const char *point)
{
    int place = static_cast<int>(end - begin) - (point != nullptr ? 1 : 0);
    double mantissa = 0.0;
    for (const char *at = begin; at != end; ++at) {
        if (at != point)
            mantissa += (*at - '0') * IntegerPower(10.0, --place);
    }
    return mantissa;
}

// The decimal exponent behind an 'e'; 0 if there is none. Beyond the range of a double one is like another.
int Exponent(const char *text)
{
    if (*text == 0)
        return 0;
    ++text;
    const bool negative = *text == '-';
    if (*text == '+' || *text == '-')
        ++text;
    int exponent = 0;
    for (; IsDigit(*text); ++text)
        exponent = std::min(exponent * 10 + (*text - '0'), 100000);
    return negative ? -exponent : exponent;
}

// Raises value and unit together for as long as `isWhole` holds for the value and the unit's step.
template <typename IsWhole>
void ScaleWhile(double *value, int *unit, IsWhole isWhole)
{
    while (*unit < FirstUnnamed - 1) {
        const int step = Step(static_cast<unsigned>(*unit));
        if (*value < step || !isWhole(*value, step))
            return;
        *value /= step;
        ++*unit;
    }
}

bool CanScale(const double *value, const int *unit)
{
    return value != nullptr && unit != nullptr && *unit >= 0 && *unit < FirstUnnamed;
}

}  // namespace

double ChangeTime(double value, unsigned from, unsigned to)
{
    if (from == UnknownUnit || to == UnknownUnit)
        return -1.0;
    if (from == to)
        return 1.0 * value;
    if (!IsTimeUnit(from) || !IsTimeUnit(to))
        return -1.0;
    return from < to ? value / Factor<double>(from, to) : value * Factor<double>(to, from);
}

long long ChangeTime2(long long value, unsigned from, unsigned to)
{
    if (from == UnknownUnit || to == UnknownUnit)
        return -1;
    if (from == to)
        return value;
    if (!IsTimeUnit(from) || !IsTimeUnit(to))
        return -1;
    return from < to ? value / Factor<long long>(from, to) : WrapMultiply(value, Factor<long long>(to, from));
}

double ChangeFrequency(double value, unsigned from, unsigned to)
{
    constexpr unsigned BeyondDouble = 110;  // 1000 to this power is infinite already
    const unsigned distance = std::min(from < to ? to - from : from - to, BeyondDouble);
    double factor = 1.0;
    for (unsigned i = 0; i < distance; ++i)
        factor *= 1000.0;
    return from < to ? (1.0 / factor) * value : factor * value;
}

double PeriodFromFreq(double frequency, unsigned freqUnit, unsigned timeUnit)
{
    return ChangeTime(1.0, Seconds, timeUnit) / ChangeFrequency(frequency, freqUnit, 0);
}

double FreqFromPeriod(double period, unsigned timeUnit, unsigned freqUnit)
{
    return ChangeFrequency(1.0 / ChangeTime(period, timeUnit, Seconds), 0, freqUnit);
}

const char *UnitNameFromID(unsigned id)
{
    return IsTimeUnit(id) ? TimeUnits[id].name : nullptr;
}

int UnitIDFromName(const char *name)
{
    if (name == nullptr)
        return -1;
    if (_stricmp(name, "s") == 0)
        return Seconds;
    for (std::size_t id = 0; id < TimeUnits.size(); ++id) {
        if (_stricmp(name, TimeUnits[id].name) == 0)
            return static_cast<int>(id);
    }
    return -1;
}

const char *GetFreqUnitName(unsigned id)
{
    return id < FrequencyUnits.size() ? FrequencyUnits[id] : "";
}

bool TextToTime(const char *text, double *value, int *unit)
{
    if (text == nullptr)
        return false;
    text = SkipSpace(text);
    const std::size_t length = strnlen(text, LongestTime + 1);
    if (length == 0 || length > LongestTime)
        return false;
    char number[LongestTime + 1] = {};
    std::memcpy(number, text, length);

    const char *end = std::find_if_not(number, number + length, IsNumberPart);
    const char *unitText = SkipSpace(end);
    const int id = UnitIDFromName(unitText);
    if (unit != nullptr)
        *unit = id;
    if (*unitText != 0 && id < 0)
        return false;
    number[end - number] = 0;
    if (value != nullptr)
        *value = TextToDouble(number);
    return true;
}

void ScaleNumber(double *value, int *unit)
{
    if (!CanScale(value, unit))
        return;
    while (*unit < FirstUnnamed && *value >= Step(static_cast<unsigned>(*unit))) {
        *value /= Step(static_cast<unsigned>(*unit));
        ++*unit;
    }
}

void ScaleNumberNoFloat(double *value, int *unit)
{
    if (!CanScale(value, unit))
        return;
    ScaleWhile(value, unit, [](double number, int step) { return std::fmod(number, step) == 0.0; });
}

void ScaleNumberMaxFloat(double *value, int *unit, int decimals)
{
    if (!CanScale(value, unit))
        return;
    const double scale = IntegerPower(10.0, decimals);
    ScaleWhile(value, unit, [scale](double number, int step) { return std::fmod(scale * number, step) == 0.0; });
}

double IntegerPower(double base, int exponent)
{
    double result = 1.0;
    for (unsigned bits = exponent < 0 ? 0U - static_cast<unsigned>(exponent) : static_cast<unsigned>(exponent);
         bits != 0; bits >>= 1) {
        if ((bits & 1) != 0)
            result *= base;
        base *= base;
    }
    return exponent < 0 ? 1.0 / result : result;
}

double TextToDouble(const char *text)
{
    const double sign = *text == '-' ? -1.0 : 1.0;
    if (*text == '+' || *text == '-')
        ++text;
    const char *end = text + std::strcspn(text, "eE");
    const std::string_view digits(text, static_cast<std::size_t>(end - text));
    const std::size_t point = digits.rfind('.');
    const bool hasPoint = point != std::string_view::npos;

    const double mantissa = Mantissa(text, end, hasPoint ? text + point : nullptr);
    const int exponent = Exponent(end) - (hasPoint ? static_cast<int>(digits.size() - point) - 1 : 0);
    if (exponent < 0)
        return mantissa / IntegerPower(10.0, -exponent) * sign;
    return IntegerPower(10.0, exponent) * mantissa * sign;
}

}  // namespace tesk

void STimeValue::SetFromValue(double value, int unit, int displayUnit, long long resolution)
{
    while (unit > 0 && value != std::trunc(value)) {
        value = tesk::ChangeTime(value, static_cast<unsigned>(unit), static_cast<unsigned>(unit - 1));
        --unit;
    }
    m_value = tesk::TruncateToInt64(value);
    m_unit = static_cast<std::uint16_t>(unit);
    m_displayUnit = static_cast<std::uint16_t>(displayUnit);
    m_ticks = 0;
    if (resolution <= 0)
        return;

    // The resolution in the coarsest unit, not above the value's, in which it reaches 1.
    unsigned coarsest = m_unit;
    double ratio = coarsest == 0 ? static_cast<double>(resolution) : 0.0;
    while (coarsest > 0 && ratio < 1.0)
        ratio = tesk::ChangeTime(static_cast<double>(resolution), 0, --coarsest);
    if (!(ratio > 0))
        return;
    const double scaled = tesk::ChangeTime(static_cast<double>(m_value), m_unit, coarsest);
    m_ticks = tesk::WrapDivide(tesk::TruncateToInt64(scaled), tesk::TruncateToInt64(ratio + 0.5));
}

void STimeValue::SetFromTicks(long long ticks, long long resolution)
{
    m_value = tesk::WrapMultiply(ticks, resolution);
    m_ticks = ticks;
    m_unit = 0;
    m_displayUnit = 0;
}

long long STimeValue::GetInDisplayUnit() const
{
    if (m_displayUnit >= m_unit)
        return tesk::ChangeTime2(m_value, m_unit, m_displayUnit);
    return tesk::TruncateToInt64(tesk::ChangeTime(static_cast<double>(m_value), m_unit, m_displayUnit));
}

namespace tesk {

namespace {

std::string DisplayUnitName(const STimeValue &time)
{
    const char *name = UnitNameFromID(time.m_displayUnit);
    return name != nullptr ? name : "";
}

}  // namespace

std::string DisplayText(const STimeValue &time)
{
    return std::to_string(time.GetInDisplayUnit()) + DisplayUnitName(time);
}

std::string DisplayTextUnsigned(const STimeValue &time)
{
    return std::to_string(static_cast<unsigned long long>(time.GetInDisplayUnit())) + DisplayUnitName(time);
}

}  // namespace tesk

bool ParseTimeArgument(const char *text, long long resolution, STimeValue &out, int defaultUnit)
{
    if (text == nullptr || *text == 0)
        return true;
    double value = 0.0;
    int unit = -1;
    if (!tesk::TextToTime(text, &value, &unit))
        return false;
    if (unit != -1) {
        out.SetFromValue(value, unit, defaultUnit, resolution);
        return true;
    }
    unit = defaultUnit;
    if (unit == -1) {
        unit = 0;
        while (resolution >= 2 && (unit == 0 || tesk::ChangeTime2(resolution, 0, static_cast<unsigned>(unit)) > 1))
            ++unit;
    }
    out.SetFromValue(value, unit, unit, resolution);
    return true;
}
