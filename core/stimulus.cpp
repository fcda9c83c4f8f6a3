#include "core/stimulus.h"

#include <string_view>

#include "core/keywords.h"
#include "settings/brel.h"
#include "settings/counter.h"
#include "settings/random.h"
#include "waveform/filestimulus.h"
#include "waveform/tableformula.h"

long long g_simRes = 1000;
const char *g_SignalName = nullptr;
SimpleString::CStr g_TypeDescription;
SimpleString::CStr g_SignalTypeDescription;

namespace {

// What `Create` was asked for, and where its keyword ends.
struct SCreation {
    const char *formula;
    const char *behindKeyword;
    long long startTime;
    tesk::CSimpleScalarInfo *scalarInfo;
    bool binaryValues;
    bool rawValues;
};

// @return a new stimulus that is good; any other is given up
IStimulus *HandOut(IStimulus *stimulus, bool isGood)
{
    if (isGood)
        return stimulus;
    stimulus->Destroy();
    return nullptr;
}

IStimulus *CreatePlainStimulus(const SCreation &creation)
{
    CStimulus *stimulus = new CStimulus(-1);
    const int result = stimulus->Parse(creation.formula, creation.startTime, creation.scalarInfo, creation.binaryValues,
                                       creation.rawValues);
    if (result == 0) {
        stimulus->Destroy();
        return nullptr;
    }
    // The lowest bit of the address tells a caller that asked for it of a value wider than one bit.
    const bool isWide = creation.binaryValues && result == -1;
    return reinterpret_cast<IStimulus *>(reinterpret_cast<char *>(static_cast<IStimulus *>(stimulus)) + isWide);
}

IStimulus *CreateCustomStimulus(const SCreation &creation)
{
    return CreateFileStimulus(creation.formula, creation.behindKeyword, creation.startTime);
}

IStimulus *CreateTxtStimulus(const SCreation &creation)
{
    return CreateTableStimulus(TxtTables, creation.formula, creation.behindKeyword, creation.startTime);
}

IStimulus *CreateMatStimulus(const SCreation &creation)
{
    return CreateTableStimulus(MatTables, creation.formula, creation.behindKeyword, creation.startTime);
}

IStimulus *CreateCounterStimulus(const SCreation &creation)
{
    CCounterStimulus *stimulus = new CCounterStimulus;
    return HandOut(stimulus, stimulus->Initialize(creation.formula, creation.startTime));
}

IStimulus *CreateRandomStimulus(const SCreation &creation)
{
    tesk::CRandomStimulus *stimulus = new tesk::CRandomStimulus;
    return HandOut(stimulus, stimulus->Initialize(creation.formula, creation.startTime, g_simRes, creation.scalarInfo));
}

// What stands behind the keyword becomes a plain formula.
IStimulus *CreateBrelStimulus(const SCreation &creation)
{
    SimpleString::CStr formula;
    if (!ExpandBrelFormula(creation.behindKeyword, formula))
        return nullptr;
    SCreation plain = creation;
    plain.formula = formula;
    return CreatePlainStimulus(plain);
}

// The kinds of formula that a keyword names, in the order in which the keywords are looked for: the first one that
// stands anywhere in the formula decides.
struct SKind {
    std::string_view keyword;
    IStimulus *(*create)(const SCreation &creation);
};

constexpr SKind Kinds[] = {
    {CustomKeyword, CreateCustomStimulus},   {TxtKeyword, CreateTxtStimulus},       {MatKeyword, CreateMatStimulus},
    {CounterKeyword, CreateCounterStimulus}, {RandomKeyword, CreateRandomStimulus}, {BrelKeyword, CreateBrelStimulus},
};

}  // namespace

IStimulus *IStimulus::Create(const char *formula, long long startTime, long long simRes,
                             tesk::CSimpleScalarInfo *scalarInfo, bool binaryValues, bool rawValues)
{
    g_simRes = simRes;
    if (formula == nullptr || *formula == 0)
        return CEmptyStimulus::Shared(false);
    SCreation creation{formula, formula, startTime, scalarInfo, binaryValues, rawValues};
    const CKeywordSearch search(formula);
    for (const SKind &kind : Kinds) {
        if (!search.Has(kind.keyword))
            continue;
        creation.behindKeyword = search.Behind(kind.keyword);
        return kind.create(creation);
    }
    return CreatePlainStimulus(creation);
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
