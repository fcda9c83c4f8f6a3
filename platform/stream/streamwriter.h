// The writer of event streams as the program's own converters use it.
#pragma once

#include <cstdint>

#include "platform/morvel.h"
#include "platform/tarnutil.h"

namespace Morvel {

class IStreamWriter : public IMorvelWrite {
public:
    /// As `AddSignal`, for a scalar that shares the events of another one: it takes none of its own.
    /// @param original  what `AddSignal` returned for a scalar whose values have the same size
    /// @return also -1 if it has not
    virtual int AddSharedSignal(int parent, const char *name, const char *typeText, int original) = 0;
    /// Whether a signal has events of its own.
    virtual bool HasEvents(int signal) const = 0;
    /// Says that the next scalar does not go together with those before it in words.
    virtual void EndGroup() = 0;
    /// Femtoseconds per file tick, 1 or more, where that is known only now.
    virtual void SetResolution(long long resolution) = 0;
    /// Adds an event to neighbouring scalars, children of one signal that were added one behind the other, from the
    /// first one or one behind `EndGroup` on.
    /// @param first    what `AddSignal` returned for the first of them; their type is one enumeration
    /// @param count    up to 64
    /// @param time     file ticks, 0 or later
    /// @param changed  those that have the event, at least one; bit 0 stands for the last of them
    /// @param word     their positions, at most 14
    /// @return false if an event lies in front of the last one of its scalar; that one is not added
    virtual bool AddWord(int first, unsigned count, long long time, std::uint64_t changed, const WaveWord &word) = 0;

protected:
    ~IStreamWriter() = default;
};

/// As `CreateStreamWrite`.
IStreamWriter *CreateStreamWriter(const char *file, long long resolution);

}  // namespace Morvel
