#include "tools/examine/examination.h"

#include <algorithm>

#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"
#include "tools/examine/fileexamination.h"
#include "tools/examine/generatorexamination.h"
#include "tools/examine/plainexamination.h"

namespace tesk {

namespace {

using CExaminer = void (*)(const SExamined &examined, const SFormulaKind &kind, CFindings &findings);

CExaminer ExaminerOf(EFormulaKind kind)
{
    switch (kind) {
    case EFormulaKind::Custom: return ExamineCustomFormula;
    case EFormulaKind::Txt: return ExamineTxtFormula;
    case EFormulaKind::Mat: return ExamineMatFormula;
    case EFormulaKind::Counter: return ExamineCounterFormula;
    case EFormulaKind::Random: return ExamineRandomFormula;
    case EFormulaKind::Brel: return ExamineBrelFormula;
    }
    return nullptr;
}

}  // namespace

CFindings ExamineFormula(const SExamined &examined)
{
    CFindings findings;
    if (examined.formula.find_first_not_of(" \t\n") == std::string::npos) {
        findings.push_back({ESeverity::Error, 0, 0, 0, "the formula is empty, and never has a value",
                            "write VALUE TIME parts with commas between, such as \"1 10ns, 0 20ns -r 30ns\""});
        return findings;
    }
    const CKeywordSearch search(examined.formula.c_str());
    if (const SFormulaKind *kind = FindKindToCreate(search))
        ExaminerOf(kind->kind)(examined, *kind, findings);
    else
        ExaminePlainFormula(examined, findings);
    return findings;
}

bool HasError(const CFindings &findings)
{
    return std::ranges::any_of(findings, [](const SFinding &finding) { return finding.severity == ESeverity::Error; });
}

}  // namespace tesk
