#include "waveform/textimporter.h"

#include "waveform/samplesteps.h"

int ImportTextFile(long long, CFileFormulaArgs &, ISignal *)
{
    return 0;
}

void ConvertSample(SampleEvent &, const char *, const CSampleColumn &, int, int) {}
