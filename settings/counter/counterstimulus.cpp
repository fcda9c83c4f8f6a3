#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/wrap.h"
#include "platform/crt.h"
#include "platform/kestrin.h"
#include "settings/counter.h"
#include "settings/counter/counterstate.h"
#include "settings/text/formulafields.h"

using namespace tesk;

namespace {

std::string WireForm(int wire, int handle)
{
    return "\\counter\\wire\\" + std::to_string(wire) + "\\handle\\" + std::to_string(handle);
}

bool ReadWireForm(std::string_view formula, int &wire, int &handle)
{
    const std::vector<std::string> fields = tesk::FormulaFields(formula);
    constexpr const char *Keywords[] = {"counter", "wire", nullptr, "handle", nullptr};
    for (std::size_t i = 0; i < std::size(Keywords); ++i) {
        if (i >= fields.size() || (Keywords[i] != nullptr && _stricmp(fields[i].c_str(), Keywords[i]) != 0))
            return false;
    }
    wire = tesk::ReadInt(fields[2].c_str());
    handle = tesk::ReadInt(fields[4].c_str());
    return true;
}

// Bits in which a whole signal of this type counts.
int LengthOfSignal(const char *typeDescription)
{
    switch (KindOf(Kestrin::KTypeInfo(typeDescription))) {
    case Kestrin::ETypeKind::Integer: return 32;
    case Kestrin::ETypeKind::Real: return 512;
    default: return 1;
    }
}

// @return the handle, -1 for a formula that cannot count a whole signal
int CreateWholeCounter(const char *formula)
{
    auto state = std::make_unique<CCounterState>();
    if (!state->Initialize(formula, LengthOfSignal(g_SignalTypeDescription)))
        return -1;
    if (state->m_type != tesk::CCounterStimulusInfo::CounterBinary)
        return -1;
    state->ShowWholeVector();
    return RegisterCounter(std::move(state));
}

CCounterState *FindCounter(int handle)
{
    const auto found = CounterRegistry().find(handle);
    return found != CounterRegistry().end() ? found->second : nullptr;
}

}  // namespace

bool CCounterFormulaParser::Run(const char *formula, std::vector<SimpleString::CStr> &internalFormulas, int length,
                                long long resolution)
{
    g_simRes = resolution;
    auto state = std::make_unique<CCounterState>();
    if (!state->Initialize(formula, length))
        return false;
    const int handle = RegisterCounter(std::move(state));
    for (int wire = 0; wire < length; ++wire)
        internalFormulas.emplace_back(WireForm(wire, handle).c_str());
    return true;
}

bool CCounterStimulus::Initialize(const char *formula, long long startTime)
{
    if (formula == nullptr)
        return false;
    if (!ReadWireForm(formula, m_wire, m_handle)) {
        m_wire = 0;
        m_handle = CreateWholeCounter(formula);
    }
    CCounterState *state = FindCounter(m_handle);
    if (state == nullptr)
        return false;
    state->StartAt(startTime);
    return true;
}

void CCounterStimulus::Destroy()
{
    delete this;
}

bool CCounterStimulus::GetValue(long long time, SimpleString::CStr &value)
{
    const CCounterState *state = FindCounter(m_handle);
    return state != nullptr && state->GetValue(m_wire, time, value);
}

long long CCounterStimulus::GetNextEventTime(long long time)
{
    CCounterState *state = FindCounter(m_handle);
    return state != nullptr ? state->GetNextEventTime(m_wire, time) : -1;
}

void CCounterStimulus::GetFormula(SimpleString::CStr &formula)
{
    formula.Empty();
    if (m_handle != -1 && m_wire != -1)
        formula = WireForm(m_wire, m_handle).c_str();
}

bool CCounterStimulus::IsFinishedAt(long long)
{
    return false;
}

bool CCounterStimulus::IsCounter() const
{
    return true;
}

int CCounterStimulus::CheckSettings(long long *)
{
    return 0;
}
