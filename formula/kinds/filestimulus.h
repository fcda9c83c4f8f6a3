// The stimulus of a "/custom" formula.
#pragma once

class IStimulus;

namespace tesk {

struct SCreation;
struct SFormulaKind;

/// @return null if the formula cannot be used
IStimulus *CreateFileStimulus(const SFormulaKind &kind, const SCreation &creation);

}  // namespace tesk
