#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "base/stdlogic.h"
#include "base/wrap.h"
#include "settings/brel.h"
#include "settings/brel/breltime.h"
#include "settings/decconverter.h"
#include "settings/timeunits.h"

using namespace tesk;

namespace {

using TimeUnit::Minutes;
using TimeUnit::Nanoseconds;

// In hexadecimal, a number without its base, such as "FF".
std::string HexText(int value)
{
    char text[16];
    std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(value));
    return text;
}

// The value as the notation writes it, "[FF]" or "1".
std::string SourceText(int value, bool numeric)
{
    return numeric ? "[" + HexText(value) + "]" : std::string(1, static_cast<char>(value));
}

// The value as a plain formula writes it, "16#FF" or "1".
std::string FormulaText(int value, bool numeric)
{
    if (numeric)
        return "16#" + HexText(value);
    const char letter = static_cast<char>(value);
    const char stdLogic = GateLevel2StdLogic(letter);
    return std::string(1, stdLogic != 0 ? stdLogic : letter);
}

std::size_t CountDigits(const std::string &number)
{
    return number.size() - (number.starts_with('-') ? 1 : 0);
}

}  // namespace

bool CBrelEvent::Parse(std::string_view value, bool numeric, std::string_view time)
{
    m_numeric = numeric;
    if (numeric) {
        TKc_decConverter converter;
        if (!converter.Convert(std::string(value).c_str(), 16))
            return false;
        m_value = static_cast<int>(converter.GetValue());
    } else {
        const char letter = value.front();
        m_value = letter == 'H' ? '1' : letter == 'L' ? '0' : static_cast<unsigned char>(letter);
    }
    return time.empty() || ParseTime(time);
}

bool CBrelEvent::ParseTime(std::string_view time)
{
    const std::size_t length = std::min(time.find_first_not_of("0123456789."), time.size());
    double number = tesk::TextToDouble(std::string(time.substr(0, length)).c_str());
    int unit = Nanoseconds;
    if (length < time.size())
        unit = tesk::UnitIDFromName(std::string(time.substr(length)).c_str());
    if (unit < 0)
        return false;
    // A fraction is resolved down to picoseconds; what is finer is lost.
    for (; unit >= Nanoseconds && number != std::trunc(number); --unit)
        number *= unit < Minutes ? 1000.0 : 60.0;
    m_duration.SetFromValue(std::trunc(number), unit, 0, 1000);
    return true;
}

int CBrelEvent::GetTextLength(long long &time)
{
    const std::size_t valueLength = m_numeric ? HexText(m_value).size() + 5 : 1;
    const std::size_t length = valueLength + CountDigits(SBrelTime(time).number) + 3;
    time = tesk::WrapAdd(time, GetDuration());
    return static_cast<int>(length);
}

bool CBrelEvent::WriteFormula(char *text, long long &time, int)
{
    const SBrelTime scaled(time);
    const std::string event = FormulaText(m_value, m_numeric) + " " + scaled.number + scaled.unit;
    std::memcpy(text, event.c_str(), event.size() + 1);
    time = tesk::WrapAdd(time, GetDuration());
    return true;
}

bool CBrelEvent::GetSource(SimpleString::CStr &text)
{
    const char *unit = m_duration.m_unit != Nanoseconds ? tesk::UnitNameFromID(m_duration.m_unit) : "";
    text = (SourceText(m_value, m_numeric) + std::to_string(m_duration.m_value) + unit).c_str();
    return true;
}

long long CBrelEvent::GetDuration()
{
    return m_duration.GetInDisplayUnit();
}

bool CBrelEvent::GetValue(long long, SimpleString::CStr &value)
{
    value = SourceText(m_value, m_numeric).c_str();
    return true;
}

long long CBrelEvent::GetNextEvent(long long time)
{
    const long long duration = GetDuration();
    if (duration == 0)
        return -1;
    return tesk::WrapAdd(tesk::WrapMultiply(tesk::WrapDivide(time, duration), duration), duration);
}

bool CBrelEvent::CheckRepeat(int)
{
    return true;
}

bool CBrelEvent::HasRepeat()
{
    return false;
}
