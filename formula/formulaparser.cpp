#include "core/formulaparser.h"

#include <cstring>
#include <vector>

#include "core/simpleformulaparser.h"
#include "core/stimulus.h"
#include "formula/kinds/filesplitter.h"
#include "formula/kinds/keywords.h"
#include "settings/brel.h"
#include "settings/counter.h"
#include "settings/random.h"

namespace {

using CElements = std::vector<SimpleString::CStr>;

// A formula as the dialogs store it may stand in double quotes.
SimpleString::CStr WithoutQuotes(const char *formula)
{
    const SimpleString::CStr text(formula);
    const int length = text.GetLength();
    const bool isQuoted = length > 1 && text[0] == '"' && text[length - 1] == '"';
    return isQuoted ? text.Mid(1, length - 2) : text;
}

int SplitPlainFormula(const char *formula, CElements &elements, int count, bool isBitVector, long long startTime)
{
    return CSimpleFormulaParser().Run(formula, elements, count, isBitVector, g_simRes, startTime);
}

int SplitBrelFormula(const char *formula, CElements &elements, int count, bool isBitVector, long long startTime)
{
    const SimpleString::CStr text = WithoutQuotes(formula);
    SimpleString::CStr plain;
    if (!ExpandBrelFormula(CKeywordSearch(text).Behind(BrelKeyword), plain))
        return 0;
    return SplitPlainFormula(plain, elements, count, isBitVector, startTime);
}

}  // namespace

void CFormulaParser::SetSimRes(long long simRes)
{
    g_simRes = simRes;
}

int CFormulaParser::Run(const char *formula, CElements &elements, int count, bool isBitVector, long long startTime)
{
    if (formula == nullptr || *formula == 0)
        return 0;
    const CKeywordSearch search(formula);
    if (search.Has(CounterKeyword))
        return CCounterFormulaParser::Run(formula, elements, count, g_simRes) ? 1 : 0;
    if (search.Has(RandomKeyword))
        return CreateRandomWires(formula, count, g_simRes, elements, false, nullptr, startTime) == -1 ? 0 : 1;
    if (search.HasFileKeyword())
        return SplitFileFormula(search, elements, count, startTime);
    if (search.Has(BrelKeyword))
        return SplitBrelFormula(formula, elements, count, isBitVector, startTime);
    return SplitPlainFormula(formula, elements, count, isBitVector, startTime);
}
