// Formulas that play a table of samples, "/txt" and "/mat". Their operations are those of the table of kinds.
#pragma once

#include "settings/cstr.h"

class CFileFormulaArgs;
class IStimulus;
class ISignal;

namespace tesk {

struct SCreation;
struct SFormulaKind;
struct SSplitting;

/// One kind of table.
struct STableKind {
    /// Looks for the file before anything is made of it; completes its name. Null for a kind that finds out later.
    bool (*canOpen)(SimpleString::CStr &fileName);
    /// @return a handle; 0 failure; -1 if the file has no data for the signal
    int (*import)(long long startTime, CFileFormulaArgs &args, ISignal *signal);
    /// Turns the element number of an internal formula into the place in a sample's text; may be null.
    int (*correctIndex)(int index);
};

extern const STableKind TxtTables;
extern const STableKind MatTables;

// The stimulus of an internal formula, "/txt/internal 5,(3)", plays that element of a loaded column; for any other the
// table is imported for a signal of the type `g_SignalTypeDescription`.

IStimulus *CreateTxtStimulus(const SFormulaKind &kind, const SCreation &creation);
IStimulus *CreateMatStimulus(const SFormulaKind &kind, const SCreation &creation);

// The table is loaded, and an element formula refers to it. Where the elements are composite themselves, it names its
// element in the file instead.

int SplitTxtFormula(const SFormulaKind &kind, const SSplitting &splitting);
int SplitMatFormula(const SFormulaKind &kind, const SSplitting &splitting);

}  // namespace tesk
