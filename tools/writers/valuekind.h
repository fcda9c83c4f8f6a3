// As what the values of a trace are written where a form has bits, integers, reals and texts.
#pragma once

#include <cstddef>

#include "tools/writers/waveform.h"

namespace tesk {

enum class EValueKind { Bits, Integer, Real, Text };

struct SValueKind {
    EValueKind kind;
    std::size_t width;  ///< bits; 64 of a real, 1 of a text

    bool operator==(const SValueKind &) const = default;
};

/// By the type, where it is known and has room for the values, else by the values.
SValueKind KindOfValues(const STrace &trace);

}  // namespace tesk
