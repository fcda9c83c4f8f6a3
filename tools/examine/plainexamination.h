// The examination of plain formulas.
#pragma once

#include "tools/examine/examination.h"

namespace tesk {

/// Values that are no values, times that cannot be read, events that are never played.
void ExaminePlainFormula(const SExamined &examined, CFindings &findings);

}  // namespace tesk
