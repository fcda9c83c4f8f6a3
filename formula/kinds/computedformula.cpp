#include "formula/kinds/computedformula.h"

#include "core/simpleformulaparser.h"
#include "core/stimulus.h"
#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"
#include "settings/brel.h"
#include "settings/counter.h"
#include "settings/random.h"

using SimpleString::CStr;

namespace tesk {

namespace {

// @return a new stimulus that is good; any other is given up
IStimulus *HandOut(IStimulus *stimulus, bool isGood)
{
    if (isGood)
        return stimulus;
    stimulus->Destroy();
    return nullptr;
}

// A formula as the dialogs store it may stand in double quotes.
CStr WithoutQuotes(const char *formula)
{
    const CStr text(formula);
    const int length = text.GetLength();
    const bool isQuoted = length > 1 && text[0] == '"' && text[length - 1] == '"';
    return isQuoted ? text.Mid(1, length - 2) : text;
}

}  // namespace

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

int SplitPlainFormula(const SSplitting &splitting)
{
    return CSimpleFormulaParser().Run(splitting.formula, splitting.elements, splitting.count, splitting.isBitVector,
                                      g_simRes, splitting.startTime);
}

IStimulus *CreateCounterStimulus(const SFormulaKind &, const SCreation &creation)
{
    CCounterStimulus *stimulus = new CCounterStimulus;
    return HandOut(stimulus, stimulus->Initialize(creation.formula, creation.startTime));
}

int SplitCounterFormula(const SFormulaKind &, const SSplitting &splitting)
{
    return CCounterFormulaParser::Run(splitting.formula, splitting.elements, splitting.count, g_simRes) ? 1 : 0;
}

IStimulus *CreateRandomStimulus(const SFormulaKind &, const SCreation &creation)
{
    CRandomStimulus *stimulus = new CRandomStimulus;
    return HandOut(stimulus, stimulus->Initialize(creation.formula, creation.startTime, g_simRes, creation.scalarInfo));
}

int SplitRandomFormula(const SFormulaKind &, const SSplitting &splitting)
{
    const int state = CreateRandomWires(splitting.formula, splitting.count, g_simRes, splitting.elements, false,
                                        nullptr, splitting.startTime);
    return state == -1 ? 0 : 1;
}

IStimulus *CreateBrelStimulus(const SFormulaKind &, const SCreation &creation)
{
    CStr formula;
    if (!ExpandBrelFormula(creation.behindKeyword, formula))
        return nullptr;
    SCreation plain = creation;
    plain.formula = formula;
    return CreatePlainStimulus(plain);
}

int SplitBrelFormula(const SFormulaKind &kind, const SSplitting &splitting)
{
    const CStr text = WithoutQuotes(splitting.formula);
    CStr formula;
    if (!ExpandBrelFormula(CKeywordSearch(text).Behind(kind.keyword), formula))
        return 0;
    SSplitting plain = splitting;
    plain.formula = formula;
    return SplitPlainFormula(plain);
}

}  // namespace tesk
