// The waveform files that are open, shared by all stimuli that replay them until the simulation ends.
#pragma once

#include <map>

#include "base/export.h"
#include "settings/cstr.h"

/// An open file.
struct SOpenWaveformFile {
    void *m_reader =
        nullptr;  ///< owned; a `WaveStore` if the key is that of a VCD file, else an `NTARN::IDatabaseReader`
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

/// Whether a file name contains `part`, in that letter case, and does not begin with it. Internal.
bool IsNamedLike(const char *fileName, const char *part);

/// Whether the file is one that a `WaveStore` holds. Internal.
bool IsVcdFileName(const char *fileName);

/// Turns "(" and ")" in the name of a signal into the "[" and "]" of the file's own names. Internal.
void RenameBrackets(SimpleString::CStr &signalName);

/// Ends all readers in the order of their keys and empties the table. Whatever points to a reader must not be used
/// any more. Internal.
void CloseOpenWaveformFiles();
