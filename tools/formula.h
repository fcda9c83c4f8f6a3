// Formulas given on the command line. Internal.
#pragma once

#include <string>

#include "tools/commandline.h"
#include "tools/walk.h"

/// Makes the stimulus. @throw CRefusal that tells what of the formula cannot be used and what would do
StimulusPtr CreateStimulus(const std::string &formula, long long start, long long resolution);

/// Makes the stimuli of the elements of a composite signal. @throw as `CreateStimulus`
std::vector<StimulusPtr> CreateElementStimuli(const std::string &formula, int count, bool isBitVector, long long start,
                                              long long resolution);

/// Adds `--res` and `--start`.
void AddTimeOptions(CCommand &command, std::string &resolution, std::string &start);
