// Splits the formulas that refer to a file, for `CFormulaParser`.
#pragma once

#include <string>
#include <vector>

#include "settings/cstr.h"
#include "signal/tree/component.h"

class CFileFormulaArgs;
class CKeywordSearch;
class ISignal;
class ISignalIterator;
struct STableKind;

/// Splits a formula with the keyword of a file. The file is read once, and each element formula refers to what has been
/// loaded, or names its element in the file.
/// @param elements  left alone if the arguments are not understood; on any other failure it holds what was made so far
/// @return 1; 0 failure
int SplitFileFormula(const CKeywordSearch &search, std::vector<SimpleString::CStr> &elements, int count,
                     long long startTime);

// The kinds, once the arguments are read. They raise what the readers of files raise.

/// "/custom": an element formula names its element in the file.
bool SplitCustomFormula(CFileFormulaArgs &args, std::vector<SimpleString::CStr> &elements, int count);

/// "/txt" and "/mat": the table is loaded, and an element formula refers to it. Where the elements are composite
/// themselves, it names its element in the file instead.
/// @param keyword  of the kind
bool SplitTableFormula(const STableKind &kind, const std::string &keyword, CFileFormulaArgs &args,
                       std::vector<SimpleString::CStr> &elements, int count, long long startTime);

/// Begins a walk over the elements of a signal. @return null for one without elements
TReference<ISignalIterator> WalkElements(ISignal &signal);

/// Appends, for each element of a signal, `head`, its full name and `tail`.
/// @return false for a signal without elements, if a full name does not fit 260 bytes, and if it makes not `count`
bool AppendElements(ISignal &signal, const std::string &head, const std::string &tail,
                    std::vector<SimpleString::CStr> &elements, int count);
