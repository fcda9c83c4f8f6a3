// The examination of formulas whose values are computed: counters, random processes, the legacy notation.
#pragma once

#include "formula/kinds/kinds.h"
#include "tools/examine/examination.h"

namespace tesk {

/// The settings of "\counter" one by one, in their order.
void ExamineCounterFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings);

/// The settings of "\random".
void ExamineRandomFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings);

/// Items of "/brel" that are dropped.
void ExamineBrelFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings);

}  // namespace tesk
