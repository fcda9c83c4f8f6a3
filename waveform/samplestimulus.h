// CCMStimulus plays one element of a table of samples.
#pragma once

#include "core/stimulus.h"
#include "waveform/samplecolumn.h"

/// Plays the samples of a column in `g_SampleColumns`. It reaches the column by its handle at each call; without one it
/// has no values and no events. The stimuli of all elements of a signal share one column, which goes with the last.
class TESK_API CCMStimulus final : public IStimulus {
public:
    /// Takes a share in the column.
    /// @param handle  of a live column
    /// @param index   number of the element, counted from the right end of a sample's text
    CCMStimulus(int handle, int index);
    CCMStimulus(const CCMStimulus &) = delete;
    CCMStimulus &operator=(const CCMStimulus &) = delete;

    void Destroy() override;
    /// The sample in force: of a real column printed with "%lf", of a whole number as it stands, else the character of
    /// this element, "0" where the text has none. @return false in front of the first sample and behind the last
    bool GetValue(long long time, SimpleString::CStr &value) override;
    /// The bits of the double. @return false also for a column that is not real
    bool GetBinary8BytesValue(long long time, long long &value) const override;
    long long GetNextEventTime(long long time) override;
    /// Empties `formula`: such a stimulus has no text form.
    void GetFormula(SimpleString::CStr &formula) override;
    void AllowBinary8BytesValues() override;
    bool IsCustom() const override;
    /// Deliberate: a flag in a pointer's clothing, never to be followed. Null for samples of a text table, the number 1
    /// for those of a MAT-file.
    const Kestrin::KTypeInfo *GetSignalTypeInfo() const override;
    bool IsFinishedAt(long long time) override;
    bool IsCounter() const override;
    int CheckSettings(long long *time) override;

private:
    TESK_LOCAL CSampleColumn *FindColumn() const;
    TESK_LOCAL static const SampleEvent *FindSample(const CSampleColumn *column, long long time);

    int m_handle;
    int m_index;
};
