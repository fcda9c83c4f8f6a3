// Two waveform files compared: both walked once, in the order of time.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/compare/comparison.h"
#include "tools/compare/scopemap.h"
#include "tools/compare/signalpairs.h"
#include "waveform/files/waveformfile.h"

namespace tesk {

struct SFileDiffOptions {
    SComparePolicy policy;           ///< times in ticks of `CommonResolution`
    std::vector<SScopeMap> scopes;   ///< as of `PairSignals`
    std::vector<std::string> globs;  ///< the same
};

/// A file that ends while the other one goes on changing.
struct SEarlyEnd {
    ECompareSide side;   ///< which one ends
    long long end;       ///< its last tick
    long long next;      ///< when the other one changes next
    std::string signal;  ///< what changes then, as its file calls it
};

/// What came out.
struct SFileDiff {
    SSignalPairs signals;
    std::vector<std::size_t> pairOf;  ///< of each of `signals.pairs` that of the comparison; aliases share one
    std::shared_ptr<CLiteralTexts> literals;
    CComparison comparison;
    long long resolution = 1;  ///< femtoseconds per tick of all times here
    /// Ends of the files; not known of a VCD that was not read as far as that.
    std::optional<long long> expectedEnd = {};
    std::optional<long long> gotEnd = {};
    long long from = 0;   ///< the first tick that was compared
    long long until = 0;  ///< the last one
    std::optional<SEarlyEnd> earlyEnd = {};

    const SPairVerdict &Verdict(std::size_t signal) const { return comparison.Verdict(pairOf[signal]); }
};

/// Femtoseconds of the longest tick of which those of both files are multiples.
long long CommonResolution(IWaveformFile &expected, IWaveformFile &got);

/// Compares up to the end of the file that ends first, or to an earlier end that the policy names. Behind its end a file
/// keeps its values: the other one must not change any more, which `earlyEnd` tells.
/// @throw CRefusal if a glob or a scope has no signal, if a time does not fit, or if there is nothing to compare
SFileDiff DiffFiles(IWaveformFile &expected, IWaveformFile &got, const SFileDiffOptions &options);

}  // namespace tesk
