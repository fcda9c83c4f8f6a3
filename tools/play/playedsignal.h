// The signal that a formula is played on, and its elements.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/writers/waveform.h"

/// One whole signal, or a composite one with its elements.
struct SPlayedSignal {
    std::string name;         ///< below the whole, such as "[7]" or ".valid"; empty for the whole itself
    std::string description;  ///< type description; empty if no type was given
    std::vector<SPlayedSignal> elements;
    bool isBitVector = false;  ///< a value is a string with a character for each element
};

/// A signal of a type as the user writes it, or of `count` wires, or with neither one whole signal. Its elements are told,
/// but not theirs.
/// @throw CRefusal for a type that cannot be read or has too many elements
SPlayedSignal DescribeSignal(const std::string &type, long long count);

/// Fills in the elements that the signal's type describes. @throw CRefusal if there are too many
void DescribeElements(SPlayedSignal &signal);

/// What the elements show together: their characters in a row, or "(a,b,c)". An element that is not driven shows as "Z" in a
/// row; where none is, the bus is not driven either.
STrace MergeElements(const std::vector<const STrace *> &elements, bool isBitVector);
