// What came out of the comparison of two files, written for a reader or a program.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "tools/compare/filediff.h"
#include "tools/writers/valuetext.h"
#include "tools/writers/waveform.h"

namespace tesk {

struct SDiffReport {
    std::string expectedPath;
    std::string gotPath;
    const SFileDiff &diff;
    std::size_t limit = 20;  ///< lines of a kind that are shown; 0 for all
    bool isCommon = false;   ///< only what both files have counts
    ERadix radix = ERadix::Binary;
};

/// Whether nothing was found that counts.
bool IsEqual(const SDiffReport &report);

/// The signals that differ, by their places among the pairs, in the order in which they first do.
std::vector<std::size_t> DifferingSignals(const SFileDiff &diff);

/// How many of a number of lines are shown.
std::size_t ShownOf(const SDiffReport &report, std::size_t count);

/// A value of a pair for a reader.
std::string ValueText(const SDiffReport &report, std::size_t signal, const CComparedRow &row);

/// Lines for a reader; the last one sums up.
void WriteDiffText(std::ostream &out, const SDiffReport &report);

/// One object, docs/json.md.
void WriteDiffJson(std::ostream &out, const SDiffReport &report);

/// Both sides of the signals that first differ, a few changes around the first difference. Walks through both files again.
/// @return a waveform without traces if none differs
SWaveform DrawnDifference(IWaveformFile &expected, IWaveformFile &got, const SDiffReport &report);

}  // namespace tesk
