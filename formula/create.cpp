// From a formula of any kind to its stimulus.
#include "core/stimulus.h"
#include "formula/kinds/computedformula.h"
#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"

IStimulus *IStimulus::Create(const char *formula, long long startTime, long long simRes,
                             tesk::CSimpleScalarInfo *scalarInfo, bool binaryValues, bool rawValues)
{
    g_simRes = simRes;
    if (formula == nullptr || *formula == 0)
        return CEmptyStimulus::Shared(false);
    tesk::SCreation creation{formula, formula, startTime, scalarInfo, binaryValues, rawValues};
    const tesk::CKeywordSearch search(formula);
    const tesk::SFormulaKind *kind = tesk::FindKindToCreate(search);
    if (kind == nullptr)
        return tesk::CreatePlainStimulus(creation);
    creation.behindKeyword = search.Behind(kind->keyword);
    return kind->create(*kind, creation);
}
