#include "settings/brel/breltime.h"

#include <charconv>

#include "settings/timeunits.h"

namespace tesk {

SBrelTime::SBrelTime(long long femtoseconds)
{
    int id = 1;
    double time = tesk::ChangeTime(static_cast<double>(femtoseconds), 0, 1);
    tesk::ScaleNumberNoFloat(&time, &id);
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, time, std::chars_format::fixed, 0);  // "%.0f"
    number.assign(digits, end.ptr);
    unit = tesk::UnitNameFromID(static_cast<unsigned>(id));
}

}  // namespace tesk
