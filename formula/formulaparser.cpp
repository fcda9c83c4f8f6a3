#include "core/formulaparser.h"

#include <vector>

#include "core/stimulus.h"
#include "formula/kinds/computedformula.h"
#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"

void CFormulaParser::SetSimRes(long long simRes)
{
    g_simRes = simRes;
}

int CFormulaParser::Run(const char *formula, std::vector<SimpleString::CStr> &elements, int count, bool isBitVector,
                        long long startTime)
{
    if (formula == nullptr || *formula == 0)
        return 0;
    tesk::SSplitting splitting{formula, formula, elements, count, isBitVector, startTime};
    const tesk::CKeywordSearch search(formula);
    const tesk::SFormulaKind *kind = tesk::FindKindToSplit(search);
    if (kind == nullptr)
        return tesk::SplitPlainFormula(splitting);
    splitting.behindKeyword = search.Behind(kind->keyword);
    return kind->split(*kind, splitting);
}
