#include "waveform/samplecolumn.h"

std::unordered_map<int, CSampleColumn *> g_SampleColumns;
int g_NextSampleHandle = 1;

CSampleColumn::~CSampleColumn() = default;

void ClassifyValueType(ISignal *, CSampleColumn &, int &, int &) {}
