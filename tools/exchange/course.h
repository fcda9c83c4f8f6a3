// What the signals of a bench do over time, ready to be written in the words of another tool.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/bench/bench.h"
#include "tools/writers/waveform.h"

namespace tesk {

/// What a signal is where types are few.
enum class EShape {
    Bits,     ///< one std_logic or bit, or a vector of them
    Integer,  ///< of 32 or 64 bits
    Real,
    Boolean,
    Other  ///< values that are words
};

/// Changes that are repeated.
struct SLoop {
    long long begin = 0;   ///< ticks
    long long period = 0;  ///< ticks, above 0
    /// By rising time, counted from the beginning of a round; the first at 0, the last before the period ends.
    std::vector<SChange> changes;
    std::optional<long long> end;  ///< from here on the signal is not driven; for ever without it
};

/// A count of bits that goes on for ever, too long to be written value by value.
struct SCount {
    long long begin = 0;    ///< ticks; `first` is shown
    long long period = 0;   ///< ticks, above 0
    std::string first;      ///< bits as they are shown first
    std::string count;      ///< bits of the count behind them
    std::string increment;  ///< bits that are added each time, modulo the width
    bool isGray = false;    ///< what is shown is the Gray code of the count
};

/// What one signal does. Elements of a composite signal that is no row of bits are signals of their own.
struct SCourse {
    std::string name;         ///< with scopes
    std::string typeName;     ///< as the bench writes it, or a description; empty for none
    std::string description;  ///< of the type; empty if none is known
    EStrength strength = EStrength::Override;
    EShape shape = EShape::Bits;
    std::size_t width = 1;         ///< of bits
    bool isVector = false;         ///< of bits: is indexed, whatever the width
    int left = 0, right = 0;       ///< of a vector
    std::vector<SChange> changes;  ///< ahead of the loop or the count
    std::optional<SLoop> loop;
    std::optional<SCount> count;

    bool IsEndless() const { return count || (loop && !loop->end); }
};

struct SCourses {
    std::string path;  ///< of the bench
    long long resolution = 1000;
    std::optional<long long> until;
    long long end = 0;  ///< ticks; `until`, or where there is none the last change
    std::vector<SCourse> signals;
};

/// The value now of a signal of bits, as wide as it is: one that is too short is filled on the left as a dump's are (IEEE
/// 1364-2005, 18.2.2), in capital letters.
std::string FullBits(const SCourse &course, const std::string &value);

/// The last change there is; 0 without one.
long long LastTick(const SCourse &course);

}  // namespace tesk
