// Importing foreign waveform files: the VCD reader and the interface of the store that it fills.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "base/export.h"

/// One value change of a scalar element in an imported file.
struct WaveEvent {
    long long m_time = 0;        ///< file ticks
    std::uint64_t m_value = 0;   ///< the raw value: a position in an enumeration, or the bits of a double
    std::uint64_t m_unused = 0;  ///< kept and never read
};

/// The positions of up to 64 neighbouring elements of an array of an enumeration: bit i of `m_planes[p]` is bit p of the
/// position of the element that stands i to the left of the last.
struct WaveWord {
    std::uint64_t m_planes[4];

    // Written out for users who compile as C++17.
    bool operator==(const WaveWord &other) const
    {
        return m_planes[0] == other.m_planes[0] && m_planes[1] == other.m_planes[1] &&
               m_planes[2] == other.m_planes[2] && m_planes[3] == other.m_planes[3];
    }
    bool operator!=(const WaveWord &other) const { return !(*this == other); }
};

/// No element has a value: all have the position 15.
inline constexpr WaveWord NoWord = {{~0ULL, ~0ULL, ~0ULL, ~0ULL}};

inline std::uint8_t PositionAt(const WaveWord &word, unsigned element)
{
    const auto bit = [&word, element](unsigned plane) { return (word.m_planes[plane] >> element & 1) << plane; };
    return static_cast<std::uint8_t>(bit(0) | bit(1) | bit(2) | bit(3));
}

namespace NTARN {

/// Receives an imported file. The importer announces a signal with `addSignal`, then each of its scalar elements with
/// `addHandle`, then `endSignal`. Handles count from 1 through the whole file; events of one handle come in rising time
/// order. The order of the operations is part of the binary interface.
class TESK_API IDatabaseStreamWriter {
public:
    virtual void open() = 0;
    virtual void setOption(std::intptr_t option) = 0;
    virtual void beginHeader() = 0;
    virtual void endHeader() = 0;
    virtual void beginSignals() = 0;
    virtual void endSignals() = 0;
    virtual void beginEvents() = 0;
    virtual void endEvents() = 0;
    virtual bool acceptsData(std::intptr_t kind) = 0;
    /// @param name      full name, scopes included
    /// @param typeInfo  type description of the whole signal
    virtual void addSignal(const char *name, const char *typeInfo, std::intptr_t mode, std::intptr_t language,
                           std::intptr_t flags, std::intptr_t parent, std::intptr_t reserved) = 0;
    virtual void addHandle(const long long *handle, std::intptr_t kind) = 0;
    virtual int endSignal() = 0;
    virtual void addEvent(const long long *handle, const WaveEvent *event) = 0;
    /// @param time  the last time of the file, in file ticks
    virtual void setEndTime(const long long *time) = 0;
    /// @param resolution  femtoseconds per file tick
    virtual void setResolution(const long long *resolution) = 0;
    virtual void setFlag(bool flag) = 0;
    virtual ~IDatabaseStreamWriter() = default;
    virtual void *getInterface() = 0;
    virtual bool isCancelled() = 0;
    virtual void setUserData(std::intptr_t data) = 0;
};

/// May be implemented by a writer beside `IDatabaseStreamWriter`. An importer then tells once that two handles have the
/// same events, always, and sends the events of `original` alone; a clock that has a thousand names is stored once.
class TESK_API IEventSharing {
public:
    virtual void shareEvents(const long long *handle, const long long *original) = 0;

protected:
    ~IEventSharing() = default;
};

/// May be implemented by a writer beside `IDatabaseStreamWriter`. An importer then sends the events of the elements of a
/// bus by this alone, up to 64 elements at once and always the same together, and all others by `addEvent`.
class TESK_API IWordEvents : public IEventSharing {
public:
    /// Puts elements that were added together to a word. Words count from 0 in the order of these calls.
    /// @param last   handle of the last element
    /// @param count  of the elements, 1 to 64
    virtual void addWord(const long long *last, std::intptr_t count) = 0;
    /// Each element of which the position changes has an event.
    /// @param time    file ticks
    /// @param before  what `after` was in the last call for this word, `NoWord` in the first
    /// @param after   the bits of no element mean nothing
    virtual void addWordEvents(std::size_t word, const long long *time, const WaveWord *before,
                               const WaveWord *after) = 0;

protected:
    ~IWordEvents() = default;
};

/// How the values of a file whose declarations were read are read further.
class TESK_API IValueSteps {
public:
    virtual ~IValueSteps() = default;
    /// The time of the values that come next, in file ticks.
    virtual long long GetTime() = 0;
    /// Sends the events of this time; behind the last one `endEvents` and what follows it.
    /// @return false behind the last one. @throw std::runtime_error as `KImport_VCD::vcdImport`
    virtual bool Step() = 0;
    /// Bytes of the file that have been read.
    virtual long long GetBytesRead() = 0;
    /// 0 where it is not known.
    virtual long long GetFileSize() = 0;
};

/// May be implemented by a writer beside `IDatabaseStreamWriter`. An importer then reads the declarations alone, tells the
/// resolution, and hands over what reads the rest.
class TESK_API ISteppedEvents {
public:
    /// @param steps  must not outlive the writer
    virtual void takeSteps(std::unique_ptr<IValueSteps> steps) = 0;

protected:
    ~ISteppedEvents() = default;
};

namespace NImport {

/// Has `progress` called each time that an import has read a piece of its file. Null, as at start, for none.
/// @param progress  `fileSize` is 0 where it is not known, as of a pipe. What it throws ends the import
/// @param context   handed back to `progress`; stays the caller's
TESK_API void SetProgress(void (*progress)(void *context, long long bytesRead, long long fileSize), void *context);

/// Reads a VCD file (IEEE 1364-2005, clause 18) in one pass and hands it to a writer.
class TESK_API KImport_VCD {
public:
    KImport_VCD() = default;
    KImport_VCD(const KImport_VCD &) = delete;
    KImport_VCD &operator=(const KImport_VCD &) = delete;
    ~KImport_VCD() = default;

    /// The writer is not owned.
    void connectTarnWriter(IDatabaseStreamWriter *writer) { m_writer = writer; }
    void setVcdFileName(const std::string &fileName) { m_fileName = fileName; }

    /// Reads the file. Names are the scopes and the variable joined by the hierarchy separator; a bus has one handle for
    /// each bit, left bound first. Every value of a one-bit or real variable is an event, and of a bit of a bus every
    /// value that changes it. Variables that share an identifier code have handles of their own; if the writer is an
    /// `IEventSharing` too, they share their events.
    ///
    /// A file that gzip packed is unpacked on the way, whatever its name; so is what comes through a pipe.
    ///
    /// What is no value is left out, and a time with a fraction is rounded, with one warning a file for each. A file that
    /// is cut off, or whose times or commands are damaged behind its declarations, is read as far as it goes, with one
    /// warning that names the last time. More than 2^18 elements and 8 for each byte of the file are refused, before any
    /// memory is taken for them, and so are more than 2^16 variables and one for two bytes; 2^25 events and 16 for each
    /// byte, 256 for a packed one, end the reading like damage, and so does a file that unpacks to more than 2^25 bytes
    /// and 128 for each of its own.
    /// @throw std::runtime_error that names the file, and where there is one the line, if nothing can be read of it,
    ///        and if the writer cancels
    void vcdImport();

private:
    IDatabaseStreamWriter *m_writer = nullptr;
    std::string m_fileName;
};

}  // namespace NImport
}  // namespace NTARN
