// The signal that a formula is played on, and its elements. Internal.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/waveform.h"

/// One whole signal, or a composite one with a formula for each element.
struct SPlayedSignal {
    std::string description;         ///< type description; empty if no type was given
    std::vector<std::string> names;  ///< of the elements, such as "[7]" or ".valid"; empty for a whole signal
    bool isBitVector = false;        ///< a value is a string with a character for each element
};

/// A signal of a type as the user writes it, or of `count` wires, or with neither one whole signal.
/// @throw CRefusal for a type that cannot be read or has too many elements
SPlayedSignal DescribeSignal(const std::string &type, long long count);

/// What the elements show together: their characters in a row, or "(a,b,c)". An element that is not driven shows as "Z" in a
/// row; where none is, the bus is not driven either.
STrace MergeElements(const std::vector<STrace> &elements, bool isBitVector);
