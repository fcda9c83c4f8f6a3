// Formulas given on the command line.
#pragma once

#include <string>
#include <vector>

#include "tools/commandline.h"
#include "tools/play/walk.h"

/// While it lives, stimuli may be made. What formulas loaded, open files and tables, goes with the outermost one.
class CSimulationRun {
public:
    CSimulationRun() { ++s_depth; }
    CSimulationRun(const CSimulationRun &) = delete;
    ~CSimulationRun()
    {
        if (--s_depth == 0)
            IStimulus::OnEndsim();
    }

private:
    static inline int s_depth = 0;
};

/// Makes the stimulus. @throw CRefusal that tells what of the formula cannot be used and what would do
tesk::StimulusPtr CreateStimulus(const std::string &formula, long long start, long long resolution);

/// Splits a formula of any kind into one for each of `count` elements; a warning tells of lost bits.
/// @param isBitVector  a value is a bit string, otherwise an aggregate
/// @throw CRefusal that tells which part cannot be split and what would do
std::vector<SimpleString::CStr> SplitFormula(const std::string &formula, long long count, bool isBitVector,
                                             long long start, long long resolution);

/// Adds `--res` and `--start`.
void AddTimeOptions(CCommand &command, std::string &resolution, std::string &start);
