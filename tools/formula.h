// Formulas given on the command line. Internal.
#pragma once

#include <string>

#include "tools/commands.h"
#include "tools/walk.h"

/// A text for a message: on one line, and not longer than a reader needs to find it.
std::string Quote(std::string text);

/// Makes the stimulus. @throw CRefusal that tells what of the formula cannot be used and what would do
StimulusPtr CreateStimulus(const std::string &formula, long long start, long long resolution);

/// Adds `--res` and `--start`.
void AddTimeOptions(CLI::App &command, std::string &resolution, std::string &start);
