// Stimuli that replay a file which they share with others.
#pragma once

#include "base/export.h"
#include "platform/tarn.h"
#include "waveform/customstimulus.h"
#include "waveform/wavestore.h"

/// What the stimuli on databases and on VCD files do alike. They can tell their formula and have binary values.
template <typename TReader>
class TESK_API TSharedFileStimulus : public CReplayStimulus {
public:
    void Destroy() override;
    bool GetValue(long long time, SimpleString::CStr &value) override;
    /// @return false also unless `AllowBinary8BytesValues` has been called
    bool GetBinary8BytesValue(long long time, long long &value) const override;
    /// Writes the formula with absolute times and with the file name, the signal and the stretch in double quotes.
    void GetFormula(SimpleString::CStr &formula) override;
    /// @return 6 the stretch is empty; 3 the repeat period is shorter than it; 4 cancelled before it begins; 5 cancelled
    ///         at a time below its length; 0 otherwise
    int CheckSettings(long long *time) override;
    /// Deliberate: stores the period but is false all the same.
    bool GetRepeatString(SimpleString::CStr &text) const override;
    bool GetCancelString(SimpleString::CStr &text) const override;
    long long GetRepeatRateInSimUnits() const override;
    long long GetRepeatRate() const override;

protected:
    /// The raw value in force at a simulation time. @return false if there is none
    virtual bool LookUp(long long time, long long &rawValue) const = 0;

    TReader *m_reader = nullptr;       // belongs to the table of open files
    const char *m_fileName = nullptr;  // text of the key in that table
};

extern template class TSharedFileStimulus<NTARN::IDatabaseReader>;
extern template class TSharedFileStimulus<WaveStore>;
