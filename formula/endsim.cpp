// The end of a simulation run.
#include "core/stimulus.h"
#include "waveform/files/filekinds.h"
#include "waveform/matimporter.h"
#include "waveform/table/samplesteps.h"

using namespace tesk;

void IStimulus::OnEndsim()
{
    tesk::CloseOpenWaveformFiles();
    ClearSampleColumns();
    ReleaseMatLibraries();
}
