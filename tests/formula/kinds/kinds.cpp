#include "formula/kinds/kinds.h"

#include <gtest/gtest.h>

#include <string>

#include "formula/kinds/keywordsearch.h"

using tesk::CKeywordSearch;
using tesk::SFormulaKind;

namespace {

std::string Keyword(const SFormulaKind *kind)
{
    return kind != nullptr ? std::string(kind->keyword) : "none";
}

}  // namespace

// Deliberate: of several keywords another one decides when a formula is split than when a stimulus is made of it.
TEST(FormulaKind, IsLookedForInOneOrderToCreateAndInAnotherToSplit)
{
    const struct {
        const char *formula, *created, *split;
    } rows[] = {
        {"\\brel /brel \\random \\counter /mat /txt /custom", "/custom", "\\counter"},
        {"/brel \\random \\counter /mat /txt", "/txt", "\\counter"},
        {"/brel /custom \\random /mat", "/custom", "\\random"},
        {"/brel \\random /mat", "/mat", "\\random"},
        {"/brel \\random \\counter", "\\counter", "\\counter"},
        {"/brel \\RANDOM", "\\random", "\\random"},
        {"/brel /MAT /txt", "/txt", "/txt"},
        {"x/Brel", "/brel", "/brel"},
        {"1 10ns, 0 20ns /counter", "none", "none"},
    };
    for (const auto &row : rows) {
        const CKeywordSearch search(row.formula);
        EXPECT_EQ(Keyword(FindKindToCreate(search)), row.created) << row.formula;
        EXPECT_EQ(Keyword(FindKindToSplit(search)), row.split) << row.formula;
    }
}

TEST(FormulaKind, RefersToAFileOrComputesItsValues)
{
    const struct {
        const char *formula;
        bool refersToFile;
    } rows[] = {{"/custom a,b", true}, {"/txt a,b", true},  {"/mat a,b", true},
                {"\\counter", false},  {"\\random", false}, {"/brel 1", false}};
    for (const auto &row : rows)
        EXPECT_EQ(FindKindToCreate(CKeywordSearch(row.formula))->RefersToFile(), row.refersToFile) << row.formula;
}
