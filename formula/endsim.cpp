// The end of a simulation run.
#include "core/stimulus.h"
#include "waveform/matimporter.h"
#include "waveform/openfiles.h"
#include "waveform/table/samplesteps.h"

void IStimulus::OnEndsim()
{
    CloseOpenWaveformFiles();
    ClearSampleColumns();
    ReleaseMatLibraries();
}
