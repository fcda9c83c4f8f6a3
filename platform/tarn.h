// The waveform database: a reader of one file, positions among a signal's events, the file errors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

#include "base/export.h"

namespace Kestrin {
class KTypeInfo;
}

namespace NTARN {

/// First and last handle of a run of sibling signals, both inclusive; -1 stands for none.
struct HSignalRange {
    int first = -1;
    int last = -1;
};

/// One value change of a signal in a file.
struct SFileEvent {
    long long time;          ///< file ticks
    std::uint32_t value;     ///< low 32 bits of the raw value
    std::uint32_t extValue;  ///< high 32 bits of the raw value
};

/// A position among the events of one signal. The events belong to the reader, and their times do not fall. Positions
/// go round: behind the last event, and equally in front of the first, stands the end.
class TESK_API KEventIterator {
public:
    /// @param events    the signal's events; may be null if there are none
    /// @param position  index of an event; `count` or more for the end
    KEventIterator(const SFileEvent *events, std::size_t count, std::size_t position)
        : m_events(events), m_count(count), m_position(position < count ? position : count)
    {}

    friend bool operator==(const KEventIterator &left, const KEventIterator &right)
    {
        return left.m_events == right.m_events && left.m_position == right.m_position;
    }

    /// The end stays the end.
    KEventIterator &operator++()
    {
        if (m_position < m_count)
            ++m_position;
        return *this;
    }

    /// From the end to the last event; off the first event to the end.
    KEventIterator &operator--()
    {
        m_position = m_position > 0 ? m_position - 1 : m_count;
        return *this;
    }

    /// Time of the event in file ticks; -1 at the end.
    long long operator*() const { return m_position < m_count ? m_events[m_position].time : -1; }
    /// Low 32 bits of the raw value; 0 at the end.
    std::uint32_t value() const { return m_position < m_count ? m_events[m_position].value : 0; }
    /// High 32 bits of the raw value; 0 at the end.
    std::uint32_t extValue() const { return m_position < m_count ? m_events[m_position].extValue : 0; }
    /// The event itself, the same one for all signals that share their events; null at the end.
    const SFileEvent *event() const { return m_position < m_count ? m_events + m_position : nullptr; }

private:
    const SFileEvent *m_events;
    std::size_t m_count;
    std::size_t m_position;  // m_count at the end
};

/// Reads one file. A handle names a signal of the file; what an operation answers for a handle that the file does not
/// have is empty: no children, no name, no events. The order of the operations is part of the binary interface.
class TESK_API IDatabaseReader {
public:
    /// Opens a waveform database: an FST file, or a GHW file, told by how it begins. The caller deletes the reader.
    /// @return null if the file cannot be opened for another reason than those that are raised
    /// @throw XFileDoesNotExist, XFileCorrupted; nothing else leaves it but std::bad_alloc
    static IDatabaseReader *create(const char *file, bool flag);

    /// The last time in the file, in file ticks.
    virtual long long GetEndTime() = 0;
    /// Femtoseconds per file tick.
    virtual long long GetResolution() = 0;
    /// First of the top-level handles, which stand in rising order. Valid for the reader's life.
    virtual const int *RootHandlesBegin() = 0;
    /// Behind the last of the top-level handles.
    virtual const int *RootHandlesEnd() = 0;
    /// The children of a signal; first is -1 if it has none.
    virtual HSignalRange GetChildRange(int handle) = 0;
    /// The signal's own name, without its parents.
    virtual std::string GetName(int handle) = 0;
    /// The signal's type, owned by the reader; of kind 0 for an unknown handle.
    virtual const Kestrin::KTypeInfo &GetType(int handle) = 0;
    /// The first event at or after `time`, in file ticks.
    virtual KEventIterator EventsFrom(int handle, long long time) = 0;
    /// The end of the signal's events.
    virtual KEventIterator EventsEnd(int handle) = 0;
    /// Ends the reader. Whatever it handed out is gone with it.
    virtual ~IDatabaseReader() = default;
    /// The signal's mode, a number that becomes the "Mode" of `ISignal`.
    virtual int GetMode(int handle) = 0;
    /// The name of a top-level signal with its path; `flag` is always false.
    virtual std::string GetFullName(int handle, bool flag) = 0;
    /// The last time of one signal, in file ticks.
    virtual long long GetSignalEndTime(int handle) = 0;
};

/// Raised where a file is opened that is not there.
class TESK_API XFileDoesNotExist : public std::exception {
public:
    const char *what() const noexcept override { return "file does not exist"; }
};

/// Raised where a file is opened that is damaged or not of the format.
class TESK_API XFileCorrupted : public std::exception {
public:
    const char *what() const noexcept override { return "file corrupted"; }
};

}  // namespace NTARN
