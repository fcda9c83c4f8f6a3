#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/wrap.h"
#include "platform/crt.h"
#include "settings/counter.h"
#include "settings/longnumber.h"
#include "settings/text/formulafields.h"
#include "settings/timeunits.h"

namespace tesk {

namespace {

bool CopyText(const SimpleString::CStr &text, char *buffer, unsigned size)
{
    if (buffer != nullptr)
        std::strncpy(buffer, text, size);
    return !text.IsEmpty();
}

struct SRadixName {
    std::string_view name;
    int radix;
};
constexpr SRadixName RadixNames[] = {{"hex", 16}, {"dec", 10}, {"octal", 8}, {"binary", 2}};

bool StoreRadix(CCounterStimulusInfoImpl &settings, const std::string &text)
{
    constexpr int NoRadix = 1;
    const auto known = std::ranges::find(RadixNames, text, &SRadixName::name);
    const int radix = known != std::end(RadixNames) ? known->radix : ReadInt(text.c_str());
    if (radix == NoRadix)
        return false;
    settings.m_displayRadix = radix != 0 ? radix : 2;
    return true;
}

// Stores a number of any meaning.
template <auto Member>
bool StoreNumber(CCounterStimulusInfoImpl &settings, const std::string &text)
{
    auto &member = settings.*Member;
    member = static_cast<std::remove_reference_t<decltype(member)>>(ReadInt(text.c_str()));
    return true;
}

template <auto Member>
bool StoreText(CCounterStimulusInfoImpl &settings, const std::string &text)
{
    settings.*Member = text.c_str();
    return true;
}

// The settings of a formula in their order, each stored as soon as it is read.
struct SSetting {
    const char *keyword;
    bool (*store)(CCounterStimulusInfoImpl &settings, const std::string &text);
};
using CSettings = CCounterStimulusInfoImpl;
constexpr SSetting Settings[] = {
    {"TYPE", StoreNumber<&CSettings::m_type>},
    {"DIR", StoreNumber<&CSettings::m_direction>},
    {"RADIX", StoreRadix},
    {"START", StoreText<&CSettings::m_startingValue>},
    {"INC", StoreText<&CSettings::m_increment>},
    {"PERIOD", StoreText<&CSettings::m_countPeriod>},
    {"REV", StoreNumber<&CSettings::m_reverseBitOrder>},
};

}  // namespace

CCounterStimulusInfo::CCounterStimulusInfo() : m_impl(new CCounterStimulusInfoImpl) {}

CCounterStimulusInfo::CCounterStimulusInfo(const CCounterStimulusInfo &other)
    : m_impl(new CCounterStimulusInfoImpl(*other.m_impl))
{}

CCounterStimulusInfo::~CCounterStimulusInfo()
{
    delete m_impl;
}

CCounterStimulusInfo &CCounterStimulusInfo::operator=(const CCounterStimulusInfo &other) = default;

CCounterStimulusInfo::Type CCounterStimulusInfo::GetType() const
{
    return m_impl->m_type;
}

void CCounterStimulusInfo::SetType(Type type)
{
    m_impl->m_type = type;
}

CCounterStimulusInfo::Dir CCounterStimulusInfo::GetDir() const
{
    return m_impl->m_direction;
}

void CCounterStimulusInfo::SetDir(Dir direction)
{
    m_impl->m_direction = direction;
}

int CCounterStimulusInfo::GetDisplayRadix() const
{
    return m_impl->m_displayRadix;
}

void CCounterStimulusInfo::SetDisplayRadix(int radix)
{
    m_impl->m_displayRadix = radix;
    if (radix != 0 && !ValidateStartingValue())
        m_impl->m_startingValue.Empty();
}

bool CCounterStimulusInfo::GetReverseBitOrder() const
{
    return m_impl->m_reverseBitOrder;
}

void CCounterStimulusInfo::SetReverseBitOrder(bool reverse)
{
    m_impl->m_reverseBitOrder = reverse;
}

bool CCounterStimulusInfo::GetStartingValue(char *buffer, unsigned size) const
{
    return CopyText(m_impl->m_startingValue, buffer, size);
}

bool CCounterStimulusInfo::GetIncrementBy(char *buffer, unsigned size) const
{
    return CopyText(m_impl->m_increment, buffer, size);
}

bool CCounterStimulusInfo::GetCountPeriod(char *buffer, unsigned size) const
{
    return CopyText(m_impl->m_countPeriod, buffer, size);
}

void CCounterStimulusInfo::SetStartingValue(const char *text)
{
    m_impl->m_startingValue = text;
}

void CCounterStimulusInfo::SetIncrementBy(const char *text)
{
    m_impl->m_increment = text;
}

void CCounterStimulusInfo::SetCountPeriod(const char *text)
{
    double period = 0.0;
    int unit = -1;
    if (TextToTime(text, &period, &unit) && period != 0.0 && unit >= 0)
        m_impl->m_countPeriod = text;
}

bool CCounterStimulusInfo::GenerateFormula(char *buffer, unsigned size) const
{
    const CSettings &settings = *m_impl;
    if (settings.m_type == 0 || settings.m_direction == 0 || settings.m_displayRadix == 0)
        return false;
    if (settings.m_startingValue.IsEmpty() || settings.m_increment.IsEmpty() || settings.m_countPeriod.IsEmpty())
        return false;
    if (size < 1 || buffer == nullptr)
        return false;
    SimpleString::CStr formula;
    formula.Format("\\counter\\TYPE\\%d\\DIR\\%d\\RADIX\\%d\\START\\%s\\INC\\%s\\PERIOD\\%s\\REV\\%d",
                   static_cast<int>(settings.m_type), static_cast<int>(settings.m_direction), settings.m_displayRadix,
                   static_cast<const char *>(settings.m_startingValue), static_cast<const char *>(settings.m_increment),
                   static_cast<const char *>(settings.m_countPeriod), settings.m_reverseBitOrder ? 1 : 0);
    return CopyText(formula, buffer, size);
}

bool CCounterStimulusInfo::FromFormula(const char *text)
{
    const std::vector<std::string> fields = FormulaFields(Unquote(text != nullptr ? text : ""));
    if (fields.empty() || _stricmp(fields[0].c_str(), "counter") != 0)
        return false;
    std::size_t field = 1;
    for (const SSetting &setting : Settings) {
        const bool isThere = field + 1 < fields.size() && _stricmp(fields[field].c_str(), setting.keyword) == 0;
        if (!isThere || !setting.store(*m_impl, fields[field + 1]))
            return false;
        field += 2;
    }
    return true;
}

bool CCounterStimulusInfo::ValidateStartingValue() const
{
    return CLongNumber(m_impl->m_startingValue, static_cast<unsigned>(m_impl->m_displayRadix)).IsNumber();
}

}  // namespace tesk
