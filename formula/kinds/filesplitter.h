// What the splitters of the formulas that refer to a file share, and that of "/custom".
#pragma once

#include <functional>
#include <string>

#include "signal/tree/component.h"

class CFileFormulaArgs;
class ISignal;
class ISignalIterator;

namespace tesk {

struct SFormulaKind;
struct SSplitting;

/// Splits a formula by its arguments. The file is read once, and each element formula refers to what has been loaded, or
/// names its element in the file. The elements are left alone if the arguments are not understood; on any other failure
/// they hold what was made so far.
/// @param splitArguments  false on failure; may raise what the readers of files raise
/// @return 1; 0 failure
int SplitFileFormula(const SFormulaKind &kind, const SSplitting &splitting,
                     const std::function<bool(CFileFormulaArgs &args)> &splitArguments);

/// "/custom": an element formula names its element in the file.
int SplitCustomFormula(const SFormulaKind &kind, const SSplitting &splitting);

/// Begins a walk over the elements of a signal. @return null for one without elements
TReference<ISignalIterator> WalkElements(ISignal &signal);

/// Appends, for each element of a signal, `head`, its full name and `tail`.
/// @return false for a signal without elements, if a full name does not fit 260 bytes, and if it makes not `count`
bool AppendElements(ISignal &signal, const std::string &head, const std::string &tail, const SSplitting &splitting);

}  // namespace tesk
