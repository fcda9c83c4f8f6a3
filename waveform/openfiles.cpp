#include "waveform/openfiles.h"

std::map<SimpleString::CStr, SOpenWaveformFile, SByteOrder> g_OpenWaveformFiles;
