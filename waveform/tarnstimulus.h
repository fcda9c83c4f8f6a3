// Stimuli that replay a signal of a waveform database, and the search for a signal by its name.
#pragma once

#include "platform/tarn.h"
#include "waveform/sharedfilestimulus.h"

/// Replays a signal of a waveform database, whose reader stays open until the simulation ends. Without a repeat it
/// wakes once more at the end of the stretch, and may announce a first change beyond that end; it has no value there.
class TESK_API CTarnStimulus : public TSharedFileStimulus<NTARN::IDatabaseReader> {
public:
    /// Called once, on a new object. @param arguments  of the formula, behind its keyword
    /// @return false if the object cannot be used
    bool InitFromFormula(long long now, const char *arguments);

protected:
    bool LookUp(long long time, long long &rawValue) const override;
    SNextChange FindNextChange(long long fileTime) const override;
};

/// Finds a signal of a database by its full name in any letter case: the names from the top-level signal down, one
/// behind the other, with a "." behind that of a record. Of several the first one in the order of the handles counts.
/// @param parent      where to search below; -1 for the whole file, and then null and {-1, -1} follow
/// @param parentName  full name of `parent`
/// @param range       children of `parent`
/// @return its handle, -1 if there is none
TESK_API int FindTarnSignalHandle(NTARN::IDatabaseReader *reader, const char *name, int parent, const char *parentName,
                                  NTARN::HSignalRange range);
