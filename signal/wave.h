// Waves: the changes of one scalar signal by time, and their search.
//
// Times are signed 64-bit counts of simulator resolution units; -1 means no time wherever one is returned or passed
// as a bound. Values are bytes whose meaning is in the signal's type description. The order of the operations of an
// interface is part of the binary interface.
#pragma once

#include "signal/unknown.h"

inline constexpr GUID IID_ISignalWave = {0x3089B360, 0xFDD0, 0x11D0, {0xA2, 0x29, 0x00, 0xC0, 0xDF, 0x12, 0x53, 0x3A}};
inline constexpr GUID IID_IEventIterator = {
    0x07E56E20, 0xFF99, 0x11D0, {0xA2, 0x29, 0x00, 0xC0, 0xDF, 0x12, 0x53, 0x3A}};

// Search modes of every look-up by time.
//
//   0 exact         the first event at the time
//   1 before        the last event below the time
//   2 after         the first event above the time
//   3 at or before  the first event at the time if there is one, else the last event below it
//   4 at or after   the first event not below the time
//
// Any other mode finds nothing.

/// One value change. Owned by its wave: never freed by its user, and gone at the next change of the wave's events.
class TESK_API IEvent {
public:
    virtual long long GetTime() = 0;
    /// Bytes of the value: 4 or 8, the width of the wave.
    virtual unsigned GetValueSize() = 0;
    /// Replaces the value. @return false, with no change, unless `size` is the value's size
    virtual bool SetValue(const void *value, unsigned size) = 0;
    /// Copies the value out. @return its size; 0, with nothing copied, if `size` is less
    virtual unsigned GetValue(void *buffer, unsigned size) = 0;
    virtual void *GetValuePtr() = 0;
    /// Bit 0: marked, written by `AddMarkedEvent`. Bit 1: the mark lies over an ordinary event. An event with bit 0
    /// alone carries no value change.
    virtual unsigned char GetFlags() = 0;
    /// @return `flags`
    virtual unsigned char SetFlags(unsigned char flags) = 0;

protected:
    ~IEvent() = default;
};

/// A position among the events of a wave. It holds no reference on the wave: the user keeps the wave alive. A change
/// of the wave's events invalidates it.
class TESK_API IEventIterator : public IUnknown {
public:
    /// The event at the position, which does not move. @return S_OK; E_FAIL at the end
    virtual long Current(IEvent **out) = 0;
    /// Stores up to `count` events in `out` and goes past them.
    /// @param fetched  receives the number stored; may be null
    /// @return S_OK if at least one was stored, else S_FALSE
    virtual long Next(unsigned count, IEvent **out, unsigned *fetched) = 0;
    /// Goes to the first event.
    virtual void Reset() = 0;
    /// @return 1 unless the position is the first element
    virtual int HasPrevious() = 0;
    /// @return 1 unless the position is the last element; deliberately also 1 at the end and on an empty wave
    virtual int HasNext() = 0;
    /// @return 1 if the wave has an event
    virtual int HasEvents() = 0;
    /// Time of the event at the position; -1 at the end.
    virtual long long GetCurrentTime() = 0;
    /// Goes to the event that a search finds. @return S_OK; E_FAIL, and the position stays, if it finds none
    virtual long Seek(long long time, int mode) = 0;

protected:
    ~IEventIterator() = default;
};

/// The changes of one scalar signal, in rising order of time. Callers hand times in rising order; the wave only looks
/// whether a time equals that of the last event.
///
/// `value` points to bytes and may be null; `size` is the size of the buffer behind it. A buffer smaller than the
/// width counts as no value: it is never copied in part.
class TESK_API ISignalWave : public IUnknown {
public:
    /// Adds an event. At the time of the last event the value of that event is replaced, unless `delta` is below that
    /// of the last write: then nothing happens. @return S_OK, also for a dropped write
    virtual long AddEvent(long long time, unsigned delta, const void *value, unsigned size) = 0;
    /// Adds a marked event, whatever `delta` is. At the time of an ordinary last event that event becomes both.
    /// @return S_OK
    virtual long AddMarkedEvent(long long time, unsigned delta, const void *value, unsigned size) = 0;
    /// Deliberately empty. @return E_NOTIMPL
    virtual long InsertEvent(long long time, const void *value, unsigned size) = 0;
    /// Collects an event for `CommitPendingEvents`; until then no search or count sees it. @return S_OK
    virtual long PushPendingEvent(long long time, const void *value, unsigned size) = 0;
    /// Puts the collected events in front of all others, the last one pushed first.
    virtual void CommitPendingEvents() = 0;
    virtual void ClearPendingEvents() = 0;
    /// Removes all events; those collected by `PushPendingEvent` stay.
    virtual void ClearEvents() = 0;
    /// A new iterator on the first event, with one reference. @return S_OK or E_OUTOFMEMORY
    virtual long CreateEventIterator(IEventIterator **out) = 0;
    /// @return S_OK; E_FAIL, with `out` untouched, if there is no such event
    virtual long FindEvent(long long time, int mode, IEvent **out) = 0;
    /// Removes the first event at `time`. @return S_OK; E_FAIL if there is none
    virtual long DeleteEvent(long long time) = 0;
    /// Removes the events from `first` to `last`, both inclusive and in either order; -1 leaves a side open.
    /// @return S_OK, also if nothing lies in between; E_FAIL if no event lies at or behind the start
    virtual long DeleteEvents(long long first, long long last) = 0;
    virtual unsigned GetEventCount() = 0;
    /// 4 or 8: bytes of the value slot.
    virtual unsigned GetValueWidth() = 0;
    /// -1 if there are no events.
    virtual long long GetFirstTime() = 0;
    /// -1 if there are no events.
    virtual long long GetLastTime() = 0;
    /// Copies the value of an event. @return S_OK; E_INVALIDARG for an `index` beyond the end or a `size` below the
    /// width; E_FAIL if nothing was copied
    virtual long GetEventValue(unsigned index, void *buffer, unsigned size) = 0;

protected:
    ~ISignalWave() = default;
};

/// Makes an empty wave and hands one reference to the caller.
/// @param size  bytes of a value: 1, 2 or 4 give a wave of width 4, 8 one of width 8
/// @return S_OK; deliberately E_OUTOFMEMORY, not E_INVALIDARG, for any other size
TESK_API long CreateSignalWave(unsigned size, ISignalWave **wave);
