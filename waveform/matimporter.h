// The importer of MAT-files: a "/mat" formula takes the events of a signal from a variable of MATLAB.
#pragma once

#include "base/export.h"
#include "core/fileformulaargs.h"

class ISignal;

/// Reads the samples of a signal from a MAT-file into a new column of `g_SampleColumns`.
///
/// The values are a matrix of doubles, or a field of a structure, "s(2).values". One column of it, with "-row" one row,
/// belongs to the signal: the one that an index behind the variable names, "v(3)" or "v(1)(3)", less the lower bound of
/// the signal's type; without an index the first. Times come from a lane of the matrix ("-time_points"), from a vector
/// ("-time_var"), or follow each other by "-interval".
/// @param startTime  ticks; when the stimulator is applied
/// @param args       `m_file` gets ".mat" appended if there is no such file without
/// @param signal     only its type is looked at
/// @return a handle; 0 if the import failed; -1, with a warning, if the file has no data for this signal
TESK_API int ImportMatFile(long long startTime, CFileFormulaArgs &args, ISignal *signal);

/// Binds MATLAB's libraries, at the first call. @return whether they are there with all that is needed of them
TESK_API bool LoadMatLibraries();

/// Gives MATLAB's libraries up; the next call of `LoadMatLibraries` tries again.
TESK_API void ReleaseMatLibraries();
