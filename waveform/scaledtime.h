// A resolution as a whole number of the coarsest unit that allows one. Internal.
#pragma once

#include "settings/timeunits.h"
#include "settings/wrap.h"

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
