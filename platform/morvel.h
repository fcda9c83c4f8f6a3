// Event-stream files (".zyn", ".tmp"): signals with their events, one signal read without the others.
#pragma once

#include <cstddef>
#include <memory>

#include "base/export.h"

namespace Morvel {

class CStoredEvents;
class KEventsStore;
class KEventsStoreCache;

/// A position among the events of a store; valid as long as one of the store's copies is.
class TESK_API KEventData {
public:
    /// File ticks; -1 where it was never placed.
    const long long &GetTime() const { return m_time; }
    /// Copies the raw value. What of `buffer` lies behind the value's own size becomes 0.
    void GetValue(unsigned char *buffer, unsigned size) const;

private:
    friend class KEventsStore;

    const CStoredEvents *m_events = nullptr;
    std::size_t m_position = 0;
    long long m_time = -1;
};

/// The events of one signal. Copies share them.
class TESK_API KEventsStore {
public:
    TESK_LOCAL explicit KEventsStore(std::shared_ptr<const CStoredEvents> events);

    /// Places `event` on the last event not later than `time`, by binary search. `cache` is always null.
    /// @return false if there is none
    bool GetFirstEvent(const long long &time, KEventData *event, KEventsStoreCache *cache) const;
    /// Moves `event` to the next event, or to the first of all if it was never placed. @return false at the end, and for
    /// an event of another signal; `event` then stays where it was
    bool GetNextEvent(KEventData *event) const;
    /// Size in bytes of one raw value.
    int GetSecondSize() const;

private:
    TESK_LOCAL void Put(KEventData &event, std::size_t position, long long time) const;

    std::shared_ptr<const CStoredEvents> m_events;
};

/// The signals of a file. Handles are those of `IRawMorvelRead` on the same file. The order of the operations is part
/// of the binary interface.
class TESK_API IMorvelRead {
public:
    /// Number of top-level signals.
    virtual int GetSignalCount() = 0;
    /// The handle of child `number` of a signal; -1 if there is none.
    virtual int GetChild(int parent, int number) = 0;
    /// The handle of top-level signal `number`; -1 if there is none.
    virtual int GetSignal(int number) = 0;
    /// Tells about a signal. Any of the pointers may be null. `name` lives as long as the reader.
    virtual void GetInfo(int handle, bool *hasChildren, int *childCount, const char **name, int *mode,
                         int *reserved) = 0;
    /// The type description of a signal; null for an unknown handle. It lives as long as the reader.
    virtual const char *GetTypeText(int handle) = 0;
    /// Ends the reader.
    virtual void Release() = 0;

protected:
    ~IMorvelRead() = default;
};

/// The events of a file. The order of the operations is part of the binary interface.
class TESK_API IRawMorvelRead {
public:
    /// Femtoseconds per file tick.
    virtual long long GetResolution() = 0;
    /// File ticks.
    virtual long long GetEndTime() = 0;
    /// The events of a signal, read from the file when first asked for; those of a one-dimensional array are the changes
    /// of the whole value, where an element that has none yet gives zeros. The store belongs to the reader; a copy
    /// outlives it. Null for a signal without a value of its own, such as a record, and where the file is damaged, which
    /// the log tells once.
    virtual const KEventsStore *GetEventsStore(int handle) = 0;

protected:
    friend TESK_API void DeleteRawMorvelRead(IRawMorvelRead *reader);
    virtual ~IRawMorvelRead() = default;
};

/// Writes a file. Signals and events may come in any order. The order of the operations is part of the binary interface.
class TESK_API IMorvelWrite {
public:
    /// Adds a signal. Elements of an array are added one by one, left bound first, named "(7)"; fields of a record are
    /// named ".valid". Only scalars have events.
    /// @param parent    what `AddSignal` returned, or -1 for the top level, where names carry the whole path
    /// @param typeText  a type description
    /// @return a number for the operations here, not the handle in the file; -1 if there is no such parent, it is a
    ///         scalar, or it lies 64 levels deep
    virtual int AddSignal(int parent, const char *name, const char *typeText) = 0;
    /// Adds an event to a scalar.
    /// @param time   in file ticks, 0 or later, not before the last event of the same signal
    /// @param value  raw bytes, as many as a scalar of the type has (`KTypeInfo::GetScalarSize_OldFormat`)
    /// @return false, and nothing is added, if that does not hold
    virtual bool AddEvent(int signal, long long time, const void *value) = 0;
    /// Without it, and where events lie behind it, the file ends with its last event. @param time  0 or later
    virtual void SetEndTime(long long time) = 0;
    /// Completes the file and puts it in its place.
    /// @return false, with one line in the log and without a file, if it could not be written
    virtual bool Finish() = 0;
    /// Ends the writer. What was not finished leaves no file.
    virtual void Release() = 0;

protected:
    ~IMorvelWrite() = default;
};

/// Opens an event stream. @return null for a file that is missing; null, with one line in the log that names it, for one
/// that is damaged, cut off, or no event stream
TESK_API IMorvelRead *CreateStreamRead(const char *file);
/// As `CreateStreamRead`; end it with `DeleteRawMorvelRead`.
TESK_API IRawMorvelRead *CreateRawMorvelRead(const char *file);
TESK_API void DeleteRawMorvelRead(IRawMorvelRead *reader);

/// Begins an event stream. It is written beside its place, and a file that is already there is replaced when it is whole.
/// @param resolution  femtoseconds per file tick, 1 or more
/// @return null, with one line in the log, if nothing can be written there
TESK_API IMorvelWrite *CreateStreamWrite(const char *file, long long resolution);

struct SEndStream {
    void operator()(IMorvelRead *reader) const { reader->Release(); }
    void operator()(IRawMorvelRead *reader) const { DeleteRawMorvelRead(reader); }
    void operator()(IMorvelWrite *writer) const { writer->Release(); }
};
// Each owns what one of the operations above has opened.
using StreamReadPtr = std::unique_ptr<IMorvelRead, SEndStream>;
using RawStreamReadPtr = std::unique_ptr<IRawMorvelRead, SEndStream>;
using StreamWritePtr = std::unique_ptr<IMorvelWrite, SEndStream>;

}  // namespace Morvel
