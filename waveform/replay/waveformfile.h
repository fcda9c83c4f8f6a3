// What a stimulus that replays a file is filled from, and in what the kinds of files differ there.
#pragma once

#include <optional>

#include "platform/log.h"
#include "settings/cstr.h"

class ISignal;

/// The file that a formula names. It closes what it opened, unless that was kept.
class IWaveformFile {
public:
    /// @return false if the file cannot be opened; may raise as well
    virtual bool Open(const SimpleString::CStr &fileName) = 0;
    /// Femtoseconds per file tick.
    virtual long long GetResolution() = 0;
    /// File ticks.
    virtual long long GetEndTime() = 0;
    virtual std::optional<int> FindSignal(const char *name) = 0;
    /// Makes a signal of the type that the file gives to `handle`. @return negative on failure
    virtual long MakeSignal(int handle, ISignal **signal) = 0;
    /// Hands what the stimulus needs over to it. @return false if there is nothing
    virtual bool Keep(int handle) = 0;

protected:
    ~IWaveformFile() = default;
};

/// The differences between the kinds of files. They are deliberate.
struct SWaveformFileRules {
    bool renamesBrackets;       // "(" and ")" in the name of the signal stand for "[" and "]"
    bool logsFaults;            // a missing or damaged file, and a signal that the file does not have
    bool allowsEmptyStretch;    // also one at the very end of the file
    bool comparesDisplayUnits;  // with the end of the file, instead of ticks
    bool scalesEnd;             // the end of the file counts file ticks, as it should, and not time units

    void Log(const char *text) const
    {
        if (logsFaults)
            Q71log_PrintFormattedString(1, "KERNEL", "", text);
    }
};

//                                                brackets  faults  empty stretch  display units  scaled end
inline constexpr SWaveformFileRules StreamRules = {false, false, true, false, true};
inline constexpr SWaveformFileRules DatabaseRules = {true, true, false, false, true};
inline constexpr SWaveformFileRules VcdRules = {true, true, false, true, false};
