#include "core/stimulus.h"

long long g_simRes = 1000;
const char *g_SignalName = nullptr;
SimpleString::CStr g_TypeDescription;
SimpleString::CStr g_SignalTypeDescription;

void IStimulus::SetupAdditionalInfo(const char *signalName, const char *typeDescription)
{
    if (signalName == nullptr) {
        g_SignalTypeDescription = typeDescription;
        return;
    }
    g_SignalName = signalName;
    g_TypeDescription = typeDescription;
    g_SignalTypeDescription = g_TypeDescription;
}

bool IStimulus::GetBinary8BytesValue(long long, long long &) const
{
    return false;
}

void IStimulus::AllowBinary8BytesValues() {}

bool IStimulus::IsCustom() const
{
    return false;
}

const Kestrin::KTypeInfo *IStimulus::GetSignalTypeInfo() const
{
    return nullptr;
}

bool IStimulus::IsCounter() const
{
    return false;
}

void IStimulus::GetTimeString(long long, SimpleString::CStr &text) const
{
    text.Empty();
}

bool IStimulus::GetRepeatString(SimpleString::CStr &) const
{
    return false;
}

bool IStimulus::GetCancelString(SimpleString::CStr &) const
{
    return false;
}

long long IStimulus::GetRepeatRateInSimUnits() const
{
    return 0;
}

long long IStimulus::GetRepeatRate() const
{
    return 0;
}

IStimulus *CEmptyStimulus::Shared(bool cancelled)
{
    static CEmptyStimulus s_empty(false);
    static CEmptyStimulus s_cancelled(true);
    return cancelled ? &s_cancelled : &s_empty;
}

void CEmptyStimulus::Destroy() {}

bool CEmptyStimulus::GetValue(long long, SimpleString::CStr &value)
{
    value.Empty();
    return true;
}

long long CEmptyStimulus::GetNextEventTime(long long)
{
    return -1;
}

void CEmptyStimulus::GetFormula(SimpleString::CStr &formula)
{
    formula.Empty();
}

bool CEmptyStimulus::IsFinishedAt(long long)
{
    return m_cancelled;
}

int CEmptyStimulus::CheckSettings(long long *)
{
    return 0;
}
