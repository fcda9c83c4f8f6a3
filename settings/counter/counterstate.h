// The running counter of a vector, shared by the stimuli of its wires.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "settings/bitvector.h"
#include "settings/counter.h"

namespace tesk {

/// A counter. It always knows two values: the present one, in force from `time`, and the next one, one period later.
/// Whichever wire asks first for what lies behind `time` moves it on for all; it never moves back.
class CCounterState : public tesk::CCounterStimulusInfoImpl {
public:
    /// Reads the settings, as told at `CCounterFormulaParser::Run`, and computes the first two values.
    /// @param length  bits of the counter; a negative one only tries the formula out, on a single bit
    bool Initialize(const char *formula, int length);

    /// From now on the value is the whole number in binary, "2#101", not one bit of it.
    void ShowWholeVector() { m_isWholeVector = true; }
    /// Moves the time up to `time`, ticks, unless it is later already. The counter answers nothing before.
    void StartAt(long long time);

    /// @return false for a wire beyond the vector, and unless `time` is the present or the next value's
    bool GetValue(int wire, long long time, SimpleString::CStr &value) const;
    /// @return the time of the first change behind `time`, -1 for a wire beyond the vector
    long long GetNextEventTime(int wire, long long time);

private:
    bool ReadPeriod();
    bool ReadValue(const SimpleString::CStr &text, CBitVector &value) const;
    void PrepareCount();
    void CheckOneHot(bool ones);
    void Advance();
    bool IsUp() const { return m_direction == tesk::CCounterStimulusInfo::DirUp; }
    bool HasAnswers(int wire) const { return wire < m_length && m_time != -1; }
    long long NextTime() const;

    long long m_time = -1;             // ticks; -1 until the first wire is attached
    long long m_period = -1;           // ticks
    CBitVector m_incrementValue;       // the increment as a number
    CBitVector m_count;                // the count itself, neither in Gray code nor mirrored
    CBitVector m_next;                 // what the wires show one period after `time`
    CBitVector m_present;              // what they show at `time`
    unsigned m_position = 0xFFFFFFFF;  // of the walking bit; this before the first step
    int m_length = 0;
    bool m_isWholeVector = false;
};

/// All counters by handle. They live as long as the process.
std::unordered_map<int, CCounterState *> &CounterRegistry();

/// Enters a counter. @return its handle
int RegisterCounter(std::unique_ptr<CCounterState> state);

}  // namespace tesk
