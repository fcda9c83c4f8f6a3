// Stimuli that replay a signal of a VCD file.
#pragma once

#include "waveform/sharedfilestimulus.h"
#include "waveform/wavestore.h"

/// Replays a scalar signal, or an element of a vector, of a VCD file, which is held in memory until the simulation ends.
class TESK_API CVcdStimulus : public TSharedFileStimulus<WaveStore> {
public:
    /// Called once, on a new object. @param arguments  of the formula, behind its keyword
    /// @return false if the object cannot be used
    bool InitFromFormula(long long now, const char *arguments);

protected:
    /// Deliberate: of a signal without changes `rawValue` stays, and that is a success.
    bool LookUp(long long time, long long &rawValue) const override;
    SNextChange FindNextChange(long long fileTime) const override;
};
