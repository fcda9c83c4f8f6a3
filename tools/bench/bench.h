// A bench: many stimuli with their signals, read from a TOML file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/examine/finding.h"

namespace tesk {

/// Where something stands in a bench file; 0 where it stands in none. Of a bench from the command line the argument.
struct SBenchPlace {
    int line = 0;    ///< from 1; the number of the argument
    int column = 0;  ///< from 1; in the argument

    auto operator<=>(const SBenchPlace &) const = default;
};

/// How a stimulator puts its value on a signal of a design.
enum class EStrength {
    Override,  ///< forces
    Deposit,   ///< sets once for each change
    Drive      ///< drives, and releases between
};

/// The strength of a name such as "Deposit", in any letter case. @return nothing for another word
std::optional<EStrength> StrengthOf(const std::string &name);

/// A signal and its stimulus.
struct SBenchSignal {
    std::string name;  ///< the scope of the bench in front
    std::string formula;
    std::string typeName;     ///< as the bench writes it; empty for none
    std::string description;  ///< type description; empty for none
    EStrength strength = EStrength::Override;
    long long start = 0;  ///< ticks; when the stimulator is applied
    SBenchPlace place;    ///< of the formula
};

/// A whole scope of a recorded run.
struct SBenchReplay {
    std::string file;
    std::string scope;                 ///< in the file; empty for all of it
    std::string to;                    ///< what the design calls the scope; as `scope` where it does not say
    std::vector<std::string> drive;    ///< globs of names below the scope
    std::vector<std::string> compare;  ///< globs of names below the scope
    bool matchesUnknown = false;       ///< an x in the record is compared, too
    long long tolerance = 0;           ///< ticks
    long long from = 0;                ///< ticks; what happens before is not compared
    std::optional<double> realTolerance = {};
    SBenchPlace place;
};

struct SBench {
    std::string path;             ///< as it was given; empty for one from the command line
    long long resolution = 1000;  ///< femtoseconds per tick
    std::optional<long long> until;
    std::string scope;
    std::vector<SBenchSignal> signals;  ///< in the order of the file
    std::vector<SBenchReplay> replays;
};

/// What is wrong with a bench, or odd about one of its formulas.
struct SBenchFault {
    ESeverity severity = ESeverity::Error;
    SBenchPlace place;
    std::string text;          ///< with advice, one line
    bool isOfFormula = false;  ///< a finding of a formula, which is played by the letter all the same
    bool isOfType = false;     ///< a type is missing that a design, if there is one, tells
};

/// Whether what was given for a formula names a bench file: it ends in ".toml" and no formula does.
bool IsBenchName(const std::string &text);

/// Reads a bench file. All faults are told, not only the first; a key that is not known is one.
/// @param faults  receives them in the order of the file; the bench can be used if none is an error
SBench ReadBench(const std::string &path, std::vector<SBenchFault> &faults);

/// Whether one of them is an error.
bool HasError(const std::vector<SBenchFault> &faults);

/// "bench.toml:4:9: error: ..."; of a bench from the command line "error: ...", which names the signal.
std::string FaultLine(const SBench &bench, const SBenchFault &fault);

}  // namespace tesk
