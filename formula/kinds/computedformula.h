// Formulas that need no file: plain ones, "\counter", "\random" and "/brel". Their operations are those of the table of
// kinds.
#pragma once

class IStimulus;

namespace tesk {

struct SCreation;
struct SFormulaKind;
struct SSplitting;

/// With `binaryValues` the lowest bit of the pointer tells of a value wider than one bit.
IStimulus *CreatePlainStimulus(const SCreation &creation);
int SplitPlainFormula(const SSplitting &splitting);

IStimulus *CreateCounterStimulus(const SFormulaKind &kind, const SCreation &creation);
int SplitCounterFormula(const SFormulaKind &kind, const SSplitting &splitting);

IStimulus *CreateRandomStimulus(const SFormulaKind &kind, const SCreation &creation);
int SplitRandomFormula(const SFormulaKind &kind, const SSplitting &splitting);

// What stands behind "/brel" becomes a plain formula.
IStimulus *CreateBrelStimulus(const SFormulaKind &kind, const SCreation &creation);
int SplitBrelFormula(const SFormulaKind &kind, const SSplitting &splitting);

}  // namespace tesk
