// What a waveform file cannot play, or plays otherwise than it looks.
#pragma once

#include "core/fileformulaargs.h"
#include "tools/examine/finding.h"
#include "tools/examine/formulaitems.h"

namespace tesk {

/// Opens the file of a "/custom" formula as its name says and looks at the signal in it.
/// @param signal  where the signal stands in the formula
void ExamineRecord(const CFileFormulaArgs &args, const SFormulaWord &signal, CFindings &findings);

}  // namespace tesk
