// The waveform files that are open, shared by all stimuli that replay them until the simulation ends.
#pragma once

#include <map>

#include "base/export.h"
#include "settings/cstr.h"

/// An open file.
struct SOpenWaveformFile {
    /// Owned; a `WaveStore` if the key is that of a VCD file, else an `NTARN::IDatabaseReader`.
    void *m_reader = nullptr;
    unsigned char m_useCount = 0;  ///< 1 for the first use and 1 for each further one; wraps, and nothing reads it
};

/// Orders strings byte by byte.
struct SByteOrder {
    bool operator()(const SimpleString::CStr &left, const SimpleString::CStr &right) const
    {
        return left.Compare(right) < 0;
    }
};

/// The open files, each under its name as the formula writes it.
TESK_API extern std::map<SimpleString::CStr, SOpenWaveformFile, SByteOrder> g_OpenWaveformFiles;
