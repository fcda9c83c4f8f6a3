// CFormulaParser, which turns a formula of any kind into one formula for each element of a composite signal.
#pragma once

#include <vector>

#include "base/export.h"
#include "settings/cstr.h"

/// Splits a formula of any kind. Its results go to `IStimulus::Create` one by one.
class TESK_API CFormulaParser {
public:
    /// Stores the simulator resolution, in femtoseconds per tick, in `g_simRes`, where all parsing reads it.
    void SetSimRes(long long simRes);

    /// Recognises the kind of `formula`, keywords in any letter case and anywhere in it, and splits it. Deliberate: here
    /// "\counter" and "\random" are looked for before all other keywords, unlike in `IStimulus::Create`.
    /// @param elements     receives the element formulas; left alone for a null or empty formula
    /// @param count        number of elements
    /// @param isBitVector  of a plain formula: a value is one bit string, otherwise it is an aggregate
    /// @param startTime    ticks; when the stimulator is applied
    /// @return 1; 0 failure; -1 for a plain formula with a value that was too long
    int Run(const char *formula, std::vector<SimpleString::CStr> &elements, int count, bool isBitVector,
            long long startTime);

    CFormulaParser &operator=(const CFormulaParser &) { return *this; }
};
