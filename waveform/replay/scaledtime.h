// A resolution as a whole number of the coarsest unit that allows one.
#pragma once

#include "base/wrap.h"
#include "settings/timeunits.h"

namespace tesk {

struct SScaledTime {
    long long number;
    int unit;
};

inline SScaledTime ScaleResolution(long long femtoseconds)
{
    double number = static_cast<double>(femtoseconds);
    int unit = 0;
    tesk::ScaleNumberNoFloat(&number, &unit);
    return {tesk::TruncateToInt64(number), unit};
}

}  // namespace tesk
