// Formulas given on the command line. Internal.
#pragma once

#include <string>

#include "tools/commands.h"
#include "tools/walk.h"

/// Makes the stimulus. @throw CRefusal that tells what of the formula cannot be used and what would do
StimulusPtr CreateStimulus(const std::string &formula, long long start, long long resolution);

/// Adds `--res` and `--start`.
void AddTimeOptions(CLI::App &command, std::string &resolution, std::string &start);
