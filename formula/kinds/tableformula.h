// Formulas that play a table of samples, "/txt" and "/mat": from the text to the stimulus.
#pragma once

#include "core/fileformulaargs.h"

class IStimulus;
class ISignal;

/// One kind of table.
struct STableKind {
    bool (*parseArguments)(const char *text, CFileFormulaArgs &args);
    /// @return a handle; 0 failure; -1 if the file has no data for the signal
    int (*import)(long long startTime, CFileFormulaArgs &args, ISignal *signal);
    /// Turns the element number of an internal formula into the place in a sample's text; may be null.
    int (*correctIndex)(int index);
};

extern const STableKind TxtTables;
extern const STableKind MatTables;

/// Makes the stimulus of a formula: of an internal one, "/txt/internal 5,(3)", that of a loaded column's element; else
/// the table is imported for a signal of the type `g_SignalTypeDescription`.
/// @param behindKeyword  points into `formula`
/// @return null if the formula cannot be used
IStimulus *CreateTableStimulus(const STableKind &kind, const char *formula, const char *behindKeyword,
                               long long startTime);
