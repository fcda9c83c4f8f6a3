// The examination of formulas that refer to a file.
#pragma once

#include "formula/kinds/kinds.h"
#include "tools/examine/examination.h"

namespace tesk {

/// A stretch of a recorded signal: times, and what the file cannot play.
void ExamineCustomFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings);

/// A column of a text table: times, and what of the table is read otherwise than it looks.
void ExamineTxtFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings);

/// A variable of a MAT-file: times.
void ExamineMatFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings);

}  // namespace tesk
