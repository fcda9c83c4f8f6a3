// CClock: the settings of a clock stimulator.
#pragma once

#include <cstdint>

#include "base/export.h"
#include "settings/cstr.h"

/// A clock: a rate given as a frequency or as a period, a duty cycle, a start level and an offset. A new one runs at
/// 10 kHz with 50 percent, starts high and has no offset.
class TESK_API CClock {
public:
    static const short m_rateType = 0x0100;  ///< the mark of a rate that is a period
    static const short m_startLow = 0x0200;  ///< the mark of a clock that starts low

    CClock() = default;
    CClock(const CClock &other) = default;
    CClock &operator=(const CClock &other) = default;
    virtual ~CClock();

    /// The frequency or the period, by the rate type.
    double GetRateValue() const { return m_rateValue; }
    void SetRateValue(double value) { m_rateValue = value; }
    /// Id of the rate's unit: a frequency unit of a frequency, a time unit of a period. Only the low byte of a unit
    /// that `StreamIn` has read is told.
    unsigned char GetRateUnit() const { return static_cast<unsigned char>(m_rateUnit); }
    void SetRateUnit(unsigned char unit) { m_rateUnit = unit; }
    /// True if the rate is a period, false if it is a frequency.
    bool GetRateType() const { return HasMark(m_rateType); }
    void SetRateType(bool isPeriod) { SetMark(m_rateType, isPeriod); }
    /// Time of the first edge, in the unit in which the formula is written.
    long long GetRateOffset() const { return m_rateOffset; }
    void SetRateOffset(long long offset) { m_rateOffset = offset; }
    /// The duty cycle: how long the first level lasts, in percent of the period. Not checked.
    unsigned char GetRateCycle() const { return static_cast<unsigned char>(m_packed & CycleMask); }
    void SetRateCycle(unsigned char cycle);
    bool IsStartLow() const { return HasMark(m_startLow); }
    void SetStartLow(bool startLow) { SetMark(m_startLow, startLow); }

    /// Writes the saved form: rate value, rate unit, rate type, offset, duty cycle and start-low mark, as in
    /// "10.000000;1;0;0;50;0". Deliberate: a period is first raised, in this object, to the coarsest unit in which it
    /// is whole; a frequency is left alone.
    void StreamOut(SimpleString::CStr &text);

    /// Reads the saved form. Each field is stored as soon as it is read, without a range check; of the duty cycle the
    /// low byte.
    /// @return false for a null text or if a field is missing; the fields before it are stored, the others kept
    bool StreamIn(const char *text);

    /// Writes the formula of the clock, as in "1 0 us, 0 50 us -r 100 us": one period, repeated. A time with a fraction
    /// is written in finer units, below "fs" it is cut.
    /// @param unit    id of the time unit of the formula, -1 for the coarsest one in which the period is whole
    /// @param offset  receives the offset, and the formula begins at 0; null puts the offset into the formula. It
    ///                counts in the formula's unit, whichever that is
    /// @return true. A unit without a name is written as "(null)", which no formula reader takes
    bool GenerateFormula(SimpleString::CStr &formula, int unit, long long *offset) const;

private:
    static constexpr unsigned CycleMask = 0x00FF;

    bool HasMark(short mark) const { return (m_packed & mark) != 0; }
    void SetMark(short mark, bool on)
    {
        m_packed = static_cast<std::uint16_t>(on ? m_packed | mark : m_packed & ~mark);
    }
    TESK_LOCAL double PeriodInRateUnit() const;

    long long m_rateOffset = 0;
    double m_rateValue = 10.0;
    int m_rateUnit = 1;
    std::uint16_t m_packed = 50;  // the duty cycle in the low byte, and the two marks
};
