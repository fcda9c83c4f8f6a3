// The stimulus of a "/custom" formula.
#pragma once

class IStimulus;

/// @param formula        the whole formula
/// @param behindKeyword  what stands behind its keyword
/// @param startTime      ticks; when the stimulator is applied
/// @return null if the formula cannot be used
IStimulus *CreateFileStimulus(const char *formula, const char *behindKeyword, long long startTime);
