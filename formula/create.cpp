// From a formula of any kind to its stimulus.
#include <string_view>

#include "core/stimulus.h"
#include "formula/kinds/filestimulus.h"
#include "formula/kinds/keywords.h"
#include "formula/kinds/tableformula.h"
#include "settings/brel.h"
#include "settings/counter.h"
#include "settings/random.h"

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
