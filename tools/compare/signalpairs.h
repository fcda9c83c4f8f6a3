// Which signals of two sides are the same: by name, a bus also by its single bits.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/compare/comparedvalue.h"
#include "tools/compare/scopemap.h"
#include "waveform/files/waveformfile.h"

namespace tesk {

/// Neighbouring elements of a signal of a side, and where they stand in the pair.
struct SPairPart {
    std::size_t signal;   ///< its place among the side's signals
    std::size_t element;  ///< the first one in the signal
    std::size_t slot;     ///< the first one in the pair
    std::size_t count;

    auto operator<=>(const SPairPart &) const = default;
};

/// A signal that both sides have.
struct SSignalPair {
    std::string expectedName;
    std::string gotName;
    SComparedForm form;
    bool isBus = false;
    std::vector<SPairPart> expected;
    std::vector<SPairPart> got;
};

/// A signal whose values the sides cannot share.
struct SUnlikePair {
    std::string expectedName;
    std::string gotName;
    std::string expectedType;
    std::string gotType;
};

struct SSignalPairs {
    std::vector<SSignalPair> pairs;       ///< in the order of the expected side
    std::vector<std::string> missing;     ///< in the expected side only
    std::vector<std::string> additional;  ///< in the other one only
    std::vector<SUnlikePair> unlike;
    std::vector<std::string> unmatchedGlobs;  ///< patterns that no name of either side has
};

/// "v[3]" and "v(3)" taken apart.
struct SIndexedName {
    std::string_view base;  ///< the whole name if it has no index
    std::optional<long long> index;
};
SIndexedName TakeIndex(std::string_view name);

/// A name whose last part is an extended identifier only for its index, as the bits of a netlist have: "tb.\\v[3]\\" without the
/// backslashes. Any other name as it is.
std::string PlainName(std::string_view name);

/// The signals of a side, and what `CValueForm::Kind` says of the elements of each.
struct SPairedSide {
    const std::vector<SFileSignal> &signals;
    std::vector<EComparedKind> kinds;
};

/// Finds the pairs. Names are the same that differ in letter case only, or in "(0)" and "[0]"; where a side has two such, the
/// letters decide. Two signals of one name and one number of elements are compared from left to right, and an integer with a
/// vector. Any others are put together from elements of one index: the bus "v" and its bits "v[1]" and "v[0]", or parts of it.
/// @param scopes  none for the names as they are; else nothing outside of them is looked at
/// @param globs   of names of the expected side, as `IsLikeGlob` reads them; that of a bus takes its bits too; none for all
SSignalPairs PairSignals(const SPairedSide &expected, const SPairedSide &got, const std::vector<SScopeMap> &scopes,
                         const std::vector<std::string> &globs);

}  // namespace tesk
