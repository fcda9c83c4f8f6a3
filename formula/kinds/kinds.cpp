#include "formula/kinds/kinds.h"

#include <algorithm>
#include <iterator>

#include "core/fileformulaargs.h"
#include "core/kinds/keywords.h"
#include "formula/kinds/computedformula.h"
#include "formula/kinds/filesplitter.h"
#include "formula/kinds/filestimulus.h"
#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/tableformula.h"

namespace tesk {

namespace {

constexpr SFormulaKind Kinds[] = {
    {EFormulaKind::Custom, CustomKeyword, CreateFileStimulus, SplitCustomFormula, ParseCustomArgs},
    {EFormulaKind::Txt, TxtKeyword, CreateTxtStimulus, SplitTxtFormula, ParseTxtArgs},
    {EFormulaKind::Mat, MatKeyword, CreateMatStimulus, SplitMatFormula, ParseMatArgs},
    {EFormulaKind::Counter, CounterKeyword, CreateCounterStimulus, SplitCounterFormula, nullptr},
    {EFormulaKind::Random, RandomKeyword, CreateRandomStimulus, SplitRandomFormula, nullptr},
    {EFormulaKind::Brel, BrelKeyword, CreateBrelStimulus, SplitBrelFormula, nullptr},
};

// The orders in which keywords are looked for. The first one that stands in the formula decides.
using COrder = EFormulaKind[FormulaKindCount];
constexpr COrder CreateOrder = {EFormulaKind::Custom,  EFormulaKind::Txt,    EFormulaKind::Mat,
                                EFormulaKind::Counter, EFormulaKind::Random, EFormulaKind::Brel};
constexpr COrder SplitOrder = {EFormulaKind::Counter, EFormulaKind::Random, EFormulaKind::Custom,
                               EFormulaKind::Txt,     EFormulaKind::Mat,    EFormulaKind::Brel};

constexpr std::size_t PlaceOf(EFormulaKind kind)
{
    return static_cast<std::size_t>(kind);
}

constexpr bool IsEachRowInItsPlace()
{
    for (std::size_t i = 0; i < FormulaKindCount; ++i) {
        if (PlaceOf(Kinds[i].kind) != i)
            return false;
    }
    return true;
}

static_assert(std::size(Kinds) == FormulaKindCount && IsEachRowInItsPlace());
static_assert(std::ranges::is_permutation(CreateOrder, SplitOrder));

const SFormulaKind *FindKind(const CKeywordSearch &search, const COrder &order)
{
    for (const EFormulaKind kind : order) {
        if (search.Has(Kinds[PlaceOf(kind)].keyword))
            return &Kinds[PlaceOf(kind)];
    }
    return nullptr;
}

}  // namespace

const SFormulaKind *FindKindToCreate(const CKeywordSearch &search)
{
    return FindKind(search, CreateOrder);
}

const SFormulaKind *FindKindToSplit(const CKeywordSearch &search)
{
    return FindKind(search, SplitOrder);
}

}  // namespace tesk
