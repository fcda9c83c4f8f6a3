// A waveform file of any kind: its signals, and a walk over the events of each element.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/kestrin.h"

/// Walks the events of one scalar element by rising time. Of several events at one time only the last is met.
class IElementWalk {
public:
    virtual ~IElementWalk() = default;
    /// @param time   file ticks
    /// @param value  the raw value: a position in an enumeration, an integer, or the bits of a double
    /// @return false at the end
    virtual bool Next(long long &time, std::uint64_t &value) = 0;
};

/// A scalar, or a one-dimensional array of scalars. Records and other arrays appear as the signals in them.
struct SFileSignal {
    std::string path;
    Kestrin::KTypeInfo type;
    long long firstElement;  ///< elements have consecutive handles, left bound first
    long long elementCount;
};

class IWaveFile {
public:
    virtual ~IWaveFile() = default;
    /// Femtoseconds per file tick.
    virtual long long GetResolution() = 0;
    /// File ticks.
    virtual long long GetEndTime() = 0;
    virtual const std::vector<SFileSignal> &GetSignals() = 0;
    /// A number that elements have in common if they share their events, as the aliases of one signal do.
    /// @throw CRefusal if the events cannot be read
    virtual long long IdentifyEvents(long long element) = 0;
    /// @throw CRefusal if the events cannot be read
    virtual std::unique_ptr<IElementWalk> Walk(long long element) = 0;
};

enum class EWaveKind { Vcd, Fst, Stream };

/// What a formula "/custom" takes a file for, by its name: ".zyn" and ".tmp" are event streams, ".vcd" is VCD, any other
/// name is FST.
EWaveKind KindOfName(const std::string &path);

/// Tells a file by what is in it, and by its name if that tells nothing. A pipe is taken for a VCD and left unread.
/// @throw CRefusal if it cannot be read, or has the name of another kind and is a pipe
EWaveKind KindOfFile(const std::string &path);

/// Opens a file. Warnings go to standard error. @throw CRefusal if it cannot be read
std::unique_ptr<IWaveFile> OpenWaveFile(const std::string &path);

// One for each kind of file. Null or an exception if it cannot be read; the log then says why, or else the exception.
std::unique_ptr<IWaveFile> OpenVcdFile(const std::string &path);
std::unique_ptr<IWaveFile> OpenFstFile(const std::string &path);
std::unique_ptr<IWaveFile> OpenStreamFile(const std::string &path);
