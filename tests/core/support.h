// What the tests of stimuli share.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/stimulus.h"

using tesk::StimulusPtr;

/// The stimulus of a formula, null if it cannot be used. Times are picoseconds unless told otherwise.
inline StimulusPtr Create(const std::string &formula, long long startTime = 0, long long resolution = 1000)
{
    return StimulusPtr(IStimulus::Create(formula.c_str(), startTime, resolution, nullptr, false, false));
}

inline std::optional<std::string> ValueAt(IStimulus &stimulus, long long time)
{
    SimpleString::CStr value;
    if (!stimulus.GetValue(time, value))
        return std::nullopt;
    return std::string(value);
}

inline std::string FormulaOf(IStimulus &stimulus)
{
    SimpleString::CStr formula;
    stimulus.GetFormula(formula);
    return std::string(formula);
}

/// The formula written back; "null" if it cannot be used.
inline std::string Canonical(const std::string &formula, long long startTime = 0, long long resolution = 1000)
{
    const StimulusPtr stimulus = Create(formula, startTime, resolution);
    return stimulus == nullptr ? "null" : FormulaOf(*stimulus);
}

/// The times of the first changes, at most `limit`.
inline std::vector<long long> Changes(const std::string &formula, std::size_t limit = 100, long long startTime = 0)
{
    std::vector<long long> times;
    const StimulusPtr stimulus = Create(formula, startTime);
    for (long long time = stimulus->GetNextEventTime(-1); time != -1 && times.size() < limit;
         time = stimulus->GetNextEventTime(time))
        times.push_back(time);
    return times;
}
