#include "settings/clock.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>

#include "base/wrap.h"
#include "platform/crt.h"
#include "settings/text/fields.h"
#include "settings/timeunits.h"

const short CClock::m_rateType;
const short CClock::m_startLow;

namespace {

constexpr int UnitOfPeriod = -1;

// A time as a formula writes it.
struct SFormulaTime {
    long long number;
    const char *unit;
};

// Steps down to a unit in which the number is whole. Deliberate: a negative number stays in its unit, since its
// fraction is not above 0.
SFormulaTime Refine(double number, int unit)
{
    while (unit > 0 && number - std::trunc(number) > 0) {
        number = tesk::ChangeTime(number, static_cast<unsigned>(unit), static_cast<unsigned>(unit - 1));
        --unit;
    }
    const char *name = tesk::UnitNameFromID(static_cast<unsigned>(unit));
    return {tesk::TruncateToInt64(number), name != nullptr ? name : "(null)"};
}

}  // namespace

CClock::~CClock() = default;

void CClock::SetRateCycle(unsigned char cycle)
{
    m_packed = static_cast<std::uint16_t>((m_packed & ~CycleMask) | cycle);
}

void CClock::StreamOut(SimpleString::CStr &text)
{
    if (GetRateType())
        tesk::ScaleNumberNoFloat(&m_rateValue, &m_rateUnit);
    text.Format("%f;%i;%i;%I64d;%i;%i", m_rateValue, m_rateUnit, GetRateType() ? 1 : 0, m_rateOffset, GetRateCycle(),
                IsStartLow() ? 1 : 0);
}

bool CClock::StreamIn(const char *text)
{
    if (text == nullptr)
        return false;
    using CStore = void (*)(CClock &, const char *);
    static constexpr CStore fields[] = {
        [](CClock &clock, const char *field) { clock.m_rateValue = tesk::TextToDouble(field); },
        [](CClock &clock, const char *field) { clock.m_rateUnit = tesk::ReadInt(field); },
        [](CClock &clock, const char *field) { clock.SetRateType(tesk::ReadInt(field) != 0); },
        [](CClock &clock, const char *field) { clock.m_rateOffset = _atoi64(field); },
        [](CClock &clock, const char *field) { clock.SetRateCycle(static_cast<unsigned char>(tesk::ReadInt(field))); },
        [](CClock &clock, const char *field) { clock.SetStartLow(tesk::ReadInt(field) != 0); },
    };
    std::string_view rest(text);
    for (const CStore store : fields) {
        const auto field = tesk::TakeField(rest, ';');
        if (!field)
            return false;
        store(*this, std::string(*field).c_str());
    }
    return true;
}

bool CClock::GenerateFormula(SimpleString::CStr &formula, int unit, long long *offset) const
{
    double period = PeriodInRateUnit();
    if (unit == UnitOfPeriod) {
        unit = m_rateUnit;
        tesk::ScaleNumberNoFloat(&period, &unit);
    } else {
        period = tesk::ChangeTime(period, static_cast<unsigned>(m_rateUnit), static_cast<unsigned>(unit));
    }
    const double dutyTime = static_cast<double>(GetRateCycle()) * period * 0.01;
    const double start = offset == nullptr ? static_cast<double>(m_rateOffset) : 0.0;
    if (offset != nullptr)
        *offset = m_rateOffset;

    const SFormulaTime first = Refine(start, unit);
    const SFormulaTime second = Refine(start + dutyTime, unit);
    const SFormulaTime repeat = Refine(period, unit);
    constexpr int Room = 0x81;
    char *text = formula.GetBuffer(Room);
    std::snprintf(text, Room, "%c %lld %s, %c %lld %s -r %lld %s", IsStartLow() ? '0' : '1', first.number, first.unit,
                  IsStartLow() ? '1' : '0', second.number, second.unit, repeat.number, repeat.unit);
    formula.ReleaseBuffer();
    return true;
}

// The period, in the time unit whose id is that of the rate's unit.
double CClock::PeriodInRateUnit() const
{
    const unsigned unit = static_cast<unsigned>(m_rateUnit);
    return GetRateType() ? m_rateValue : tesk::PeriodFromFreq(m_rateValue, unit, unit);
}
