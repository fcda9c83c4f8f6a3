// Times and frequencies: names, texts, conversions, and STimeValue, one time with its units.
#pragma once

#include <cstdint>
#include <string>

#include "base/export.h"

namespace tesk {

/// Ids of the time units "fs", "ps", "ns", "us", "ms", "sec", "min" and "hr". 0xFFFFFFFF, as an int -1, is an unknown
/// unit.
namespace TimeUnit {
enum EId { Femtoseconds, Picoseconds, Nanoseconds, Microseconds, Milliseconds, Seconds, Minutes, Hours };
}  // namespace TimeUnit

/// The id of a unit, that of "ps" for a time without one, which is -1.
constexpr int UnitOrDefault(int unit)
{
    return unit != -1 ? unit : TimeUnit::Picoseconds;
}

// Frequency unit ids: 0 "Hz", 1 "kHz", 2 "MHz", 3 "GHz".

/// Converts a time from one unit to another. @return -1.0 for an unknown unit
TESK_API double ChangeTime(double value, unsigned from, unsigned to);

/// As `ChangeTime` in whole numbers: toward a coarser unit the quotient is truncated toward zero, toward a finer one
/// the product wraps. @return -1 for an unknown unit
TESK_API long long ChangeTime2(long long value, unsigned from, unsigned to);

/// Converts a frequency from one frequency unit to another.
TESK_API double ChangeFrequency(double value, unsigned from, unsigned to);

/// The period, in `timeUnit`, of a frequency in `freqUnit`. A frequency of 0 gives infinity.
TESK_API double PeriodFromFreq(double frequency, unsigned freqUnit, unsigned timeUnit);

/// The frequency, in `freqUnit`, of a period in `timeUnit`. A period of 0 gives infinity.
TESK_API double FreqFromPeriod(double period, unsigned timeUnit, unsigned freqUnit);

/// @return static text; null for an unknown id
TESK_API const char *UnitNameFromID(unsigned id);

/// @param name  in any letter case; "s" is "sec"; may be null
/// @return the id, -1 for an unknown name
TESK_API int UnitIDFromName(const char *name);

/// @return static text; "", not null, for an unknown id: deliberately unlike `UnitNameFromID`
TESK_API const char *GetFreqUnitName(unsigned id);

/// Reads a time such as "10ns", "1.5 us" or "-3".
/// @param text   fails if null, blank, or longer than 127 bytes behind leading white space
/// @param value  receives the number as written; may be null; untouched on failure
/// @param unit   receives the unit's id, -1 for none or an unknown one; may be null
/// @return false for an unknown unit; '+' and 'e' end the number, so "+5ns" and "1e3ns" fail
TESK_API bool TextToTime(const char *text, double *value, int *unit);

/// Moves a time up to the coarsest unit in which it is at least 1, fractions allowed. Nothing happens for a null
/// pointer or a unit above 7. A time of 1 hour or more leaves with the unit at 8, which has no name.
TESK_API void ScaleNumber(double *value, int *unit);

/// Moves a time up only as far as it stays whole. Nothing happens for a null pointer or a unit above 7.
TESK_API void ScaleNumberNoFloat(double *value, int *unit);

/// As `ScaleNumberNoFloat` with a tolerance: the time times 10 to the power of `decimals` must stay whole.
TESK_API void ScaleNumberMaxFloat(double *value, int *unit, int decimals);

/// `base` to the power of `exponent` by squaring; a negative exponent gives the reciprocal. Internal.
double IntegerPower(double base, int exponent);

/// Reads a decimal number with an optional sign, point and exponent. It knows no locale and does not check its input:
/// any other byte counts as its distance from '0'. `text` must not be null. Internal.
double TextToDouble(const char *text);

}  // namespace tesk

/// One time: as a count in a unit, and in ticks of a resolution. A resolution is femtoseconds per tick.
struct TESK_API STimeValue {
    long long m_value = -1;           ///< the time as a count of `m_unit`
    long long m_ticks = 0;            ///< the time in ticks of the resolution it was set with
    std::uint16_t m_unit = 0;         ///< id of the unit that `m_value` counts in
    std::uint16_t m_displayUnit = 0;  ///< id of the unit in which the time is written out again

    /// Stores `value`, refined to a unit in which it is whole as far as there is one, and its ticks.
    /// @param displayUnit  the low 16 bits are kept
    /// @param resolution   0 or negative leaves the ticks 0
    void SetFromValue(double value, int unit, int displayUnit, long long resolution);

    /// The time 0, in "fs".
    static STimeValue Zero()
    {
        STimeValue zero;
        zero.m_value = 0;
        return zero;
    }

    /// Stores a count of ticks; the value is in "fs" and wraps.
    void SetFromTicks(long long ticks, long long resolution);

    /// The time as a whole number of `m_displayUnit`, truncated; -1 for an unknown display unit.
    long long GetInDisplayUnit() const;
};

namespace tesk {

/// A time as formulas show it: its whole number of display units and, at once, the unit's name. Internal.
std::string DisplayText(const STimeValue &time);

/// As `DisplayText`; a negative number is written as its unsigned 64-bit pattern. Internal.
std::string DisplayTextUnsigned(const STimeValue &time);

}  // namespace tesk

/// Reads a time argument of a formula.
/// @param resolution   femtoseconds per tick
/// @param out          left alone for an empty `text`, and on failure
/// @param defaultUnit  unit of a time without one, and display unit always; -1 takes the finest unit that is not
///                     finer than the resolution
/// @return false if the text is no time; an empty or null text is good
TESK_API bool ParseTimeArgument(const char *text, long long resolution, STimeValue &out, int defaultUnit);
