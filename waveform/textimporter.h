// The importer of text tables.
#pragma once

#include "base/export.h"
#include "core/fileformulaargs.h"

class ISignal;
struct CSampleColumn;
struct SampleEvent;

/// Imports the samples of one signal from a text table into a new column of `g_SampleColumns`.
///
/// Values are separated by blanks, tabs, commas and semicolons, runs of them counting as one; a line ends at LF or CR.
/// Either the first line names the columns, or with "-row" each line begins with a name. A time is a whole number of
/// "-interval", or without it of ticks; so is the step between samples of a table without times.
/// @param startTime  ticks; when the stimulator is applied
/// @param args       `m_file` gets ".txt" appended if only that file can be opened
/// @param signal     only its type is looked at
/// @return the column's handle; 0 on failure, with a message in the log unless the file is missing, or a time or the
///         index of the signal is malformed
TESK_API int ImportTextFile(long long startTime, CFileFormulaArgs &args, ISignal *signal);

/// Turns a value of a table into the final form of a column's samples.
/// @param event  receives the value; what it held before is not freed
/// @param width  with `radix` from `ClassifyValueType`
TESK_API void ConvertSample(SampleEvent &event, const char *token, const CSampleColumn &column, int width, int radix);
