#include "core/stimulus.h"

long long g_simRes = 1000;
const char *g_SignalName = nullptr;
SimpleString::CStr g_TypeDescription;
SimpleString::CStr g_SignalTypeDescription;

namespace {

CEmptyStimulus g_emptyStimulus(false);

IStimulus *CreatePlainStimulus(const char *formula, long long startTime, tesk::CSimpleScalarInfo *scalarInfo,
                               bool binaryValues, bool rawValues)
{
    CStimulus *stimulus = new CStimulus(-1);
    const int result = stimulus->Parse(formula, startTime, scalarInfo, binaryValues, rawValues);
    if (result == 0) {
        stimulus->Destroy();
        return nullptr;
    }
    // The lowest bit of the address tells a caller that asked for it of a value wider than one bit.
    const bool isWide = binaryValues && result == -1;
    return reinterpret_cast<IStimulus *>(reinterpret_cast<char *>(static_cast<IStimulus *>(stimulus)) + isWide);
}

}  // namespace

IStimulus *IStimulus::Create(const char *formula, long long startTime, long long simRes,
                             tesk::CSimpleScalarInfo *scalarInfo, bool binaryValues, bool rawValues)
{
    g_simRes = simRes;
    if (formula == nullptr || *formula == 0)
        return &g_emptyStimulus;
    return CreatePlainStimulus(formula, startTime, scalarInfo, binaryValues, rawValues);
}

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
