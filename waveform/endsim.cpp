// The end of a simulation run.
#include "core/stimulus.h"
#include "waveform/samplesteps.h"

void IStimulus::OnEndsim()
{
    // The open waveform files are closed here.
    ClearSampleColumns();
    // The MATLAB libraries are let go here.
}
