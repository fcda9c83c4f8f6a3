// How the legacy gate-level notation writes times into a plain formula.
#pragma once

#include <string>

namespace tesk {

/// A time in the coarsest unit from "ps" up in which it is whole. A fraction of a picosecond is rounded away.
struct SBrelTime {
    explicit SBrelTime(long long femtoseconds);

    std::string number;
    const char *unit;
};

}  // namespace tesk
