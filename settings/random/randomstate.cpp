#include "settings/random/randomstate.h"

#include <climits>
#include <string>
#include <vector>

#include "base/wrap.h"
#include "settings/random/distributions.h"

using namespace tesk;

namespace {

unsigned g_nextRandomHandle = 0;

// "0" or "1"; a number has no bits beyond its 32.
const char *BitText(int number, long long index)
{
    return index >= 0 && index < 32 && ((static_cast<unsigned>(number) >> index) & 1U) != 0 ? "1" : "0";
}

// The letter that a number stands for. Deliberate: one that has none, such as a negative remainder, is a zero byte.
SimpleString::CStr LetterText(const tesk::CSimpleScalarInfo &scalarInfo, int number)
{
    const int count = scalarInfo.GetElementsCount();
    const char letter = count > 0 ? scalarInfo.GetElementValue(number % count) : '\0';
    return SimpleString::CStr(letter, 1);
}

SimpleString::CStr DecimalText(int number)
{
    return std::to_string(number).c_str();
}

}  // namespace

std::unordered_map<int, CRandomState *> &tesk::RandomRegistry()
{
    static auto *const registry = new std::unordered_map<int, CRandomState *>;  // never deleted, nor are its generators
    return *registry;
}

CRandomState::CRandomState(int handle, int length, bool wholeValue, const tesk::CSimpleScalarInfo *scalarInfo,
                           long long startTime)
    : m_length(length), m_handle(handle), m_time(startTime), m_wholeValue(wholeValue)
{
    if (scalarInfo != nullptr)
        m_scalarInfo = std::make_unique<tesk::CSimpleScalarInfo>(*scalarInfo);
}

bool CRandomState::Initialize(const char *formula, long long resolution)
{
    if (!m_settings.InitializeFromInternalFormula(formula))
        return false;
    m_settings.GetRandomParameters(m_seed);
    int unit = 0;
    const double period = m_settings.GetPeriod(unit);
    STimeValue time;
    time.SetFromValue(period, unit, 0, resolution);
    m_period = time.m_ticks;
    Step();
    return true;
}

void CRandomState::Release()
{
    if (--m_references > 0)
        return;
    RandomRegistry().erase(m_handle);
    delete this;
}

int CRandomState::Draw()
{
    namespace dist = tesk::distributions;
    using CInfo = tesk::CRandomStimulusInfo;
    // The settings are good, so all getters answer; each kind reads its own fields.
    int seed = 0, low = 0, high = 0, mean = 0, deviation = 0, degrees = 0, order = 0;
    m_settings.GetUniformParameters(seed, low, high);
    m_settings.GetNormalParameters(seed, mean, deviation);
    m_settings.GetTParameters(seed, degrees);
    m_settings.GetErlangParameters(seed, mean, order);
    switch (m_settings.GetDistributionKind()) {
    case CInfo::KindUniform: return dist::UniformInteger(m_seed, low, high);
    case CInfo::KindNormal: return dist::Round(dist::Normal(m_seed, mean, deviation));
    case CInfo::KindExpotential: return dist::Round(dist::Exponential(m_seed, mean));
    case CInfo::KindPoisson: return dist::Poisson(m_seed, mean);
    case CInfo::KindChiSquare: return dist::Round(dist::ChiSquare(m_seed, degrees));
    case CInfo::KindT: return dist::Round(dist::T(m_seed, degrees));
    case CInfo::KindErlang: return dist::Round(dist::Erlang(m_seed, order, mean));
    default: return dist::UniformInteger(m_seed, INT_MIN, INT_MAX);
    }
}

void CRandomState::Step()
{
    m_time = tesk::WrapAdd(m_time, m_period);
    const int draw = Draw();
    if (!m_hasDrawn) {
        m_hasDrawn = true;
        m_present = draw;
        m_next = Draw();
        return;
    }
    m_present = m_next;
    m_next = draw;
}

bool CRandomState::GetValue(int wire, long long time, SimpleString::CStr &value) const
{
    if (time < m_time || m_period == 0)
        value = ValueText(wire, m_present);
    else if (time == m_time)
        value = ValueText(wire, m_next);
    else
        value = "0";
    return true;
}

SimpleString::CStr CRandomState::ValueText(int wire, int number) const
{
    if (m_scalarInfo)
        return LetterText(*m_scalarInfo, number);
    if (m_wholeValue)
        return DecimalText(number);
    return BitText(number, static_cast<long long>(m_length) - wire - 1);
}

long long CRandomState::GetNextEventTime(long long time)
{
    if (m_period == 0)
        return -1;
    if (time >= m_time)
        Step();
    return m_time;
}

int CreateRandomWires(const char *formula, int length, long long resolution, std::vector<SimpleString::CStr> &wires,
                      bool wholeValue, const tesk::CSimpleScalarInfo *scalarInfo, long long startTime)
{
    const int handle = static_cast<int>(g_nextRandomHandle++);  // used up whether or not the rest succeeds
    auto state = std::make_unique<CRandomState>(handle, length, wholeValue, scalarInfo, startTime);
    const bool isGood = state->Initialize(formula, resolution);
    wires.clear();  // not before: the formula may be one of them
    if (!isGood)
        return -1;
    for (int wire = 0; wire < length; ++wire)
        wires.emplace_back(("\\random\\wire\\" + std::to_string(wire) + "\\" + std::to_string(handle)).c_str());
    RandomRegistry().emplace(handle, state.release());
    return handle;
}
