// The one table of the kinds of formula that a keyword names.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "settings/cstr.h"

class CFileFormulaArgs;
class IStimulus;

namespace tesk {

class CKeywordSearch;
class CSimpleScalarInfo;

enum class EFormulaKind { Custom, Txt, Mat, Counter, Random, Brel };
inline constexpr std::size_t FormulaKindCount = 6;

/// What `IStimulus::Create` was asked for.
struct SCreation {
    const char *formula;
    const char *behindKeyword;      ///< points into `formula`; at its beginning if it has no keyword
    long long startTime;            ///< ticks
    CSimpleScalarInfo *scalarInfo;  ///< may be null
    bool binaryValues;
    bool rawValues;
};

/// What `CFormulaParser::Run` was asked for.
struct SSplitting {
    const char *formula;
    const char *behindKeyword;  ///< points into `formula`; at its beginning if it has no keyword
    std::vector<SimpleString::CStr> &elements;
    int count;
    bool isBitVector;
    long long startTime;  ///< ticks
};

/// What there is to know of a kind. Its operations are given their own row.
struct SFormulaKind {
    EFormulaKind kind;
    std::string_view keyword;
    /// @return a stimulus; null if the formula cannot be used
    IStimulus *(*create)(const SFormulaKind &kind, const SCreation &creation);
    /// @return as `CFormulaParser::Run`
    int (*split)(const SFormulaKind &kind, const SSplitting &splitting);
    /// Takes apart what stands behind the keyword; null for a kind that refers to no file.
    bool (*parseArguments)(const char *text, CFileFormulaArgs &args);

    bool RefersToFile() const { return parseArguments != nullptr; }
};

/// The kind of which `IStimulus::Create` makes a stimulus, by the keywords that stand anywhere in the formula: "/custom"
/// before "/txt", "/mat", "\counter", "\random" and "/brel". @return null for a plain formula
const SFormulaKind *FindKindToCreate(const CKeywordSearch &search);

/// The kind as which `CFormulaParser::Run` splits a formula. Deliberate: "\counter" and "\random" are looked for before
/// the others here. @return null for a plain formula
const SFormulaKind *FindKindToSplit(const CKeywordSearch &search);

}  // namespace tesk
