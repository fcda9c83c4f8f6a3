// The signal model: signals, containers, handles, bus events and their factories; waves of events from wave.h.
//
// A signal is a node of a tree. It has either a wave, the changes of one scalar, or a container of child signals.
//
// A pointer that an operation hands out carries no reference unless the operation says so. The order of the
// operations of an interface is part of the binary interface.
#pragma once

#include "signal/unknown.h"
#include "signal/wave.h"

namespace Kestrin {
class KTypeInfo;
}

namespace NTARN {
class IDatabaseReader;
}

class IBusEventIterator;
class ISignal;
class ISignalContainer;
class ISignalIterator;

inline constexpr GUID IID_ISignal = {0xDA43AC40, 0x0985, 0x11D1, {0xA5, 0xBA, 0x00, 0xC0, 0xDF, 0x12, 0x53, 0x3A}};
inline constexpr GUID IID_ISignalContainer = {
    0x4233D800, 0x0990, 0x11D1, {0xA5, 0xBA, 0x00, 0xC0, 0xDF, 0x12, 0x53, 0x3A}};
inline constexpr GUID IID_ISignalIterator = {
    0xF0907A10, 0x0990, 0x11D1, {0xA5, 0xBA, 0x00, 0xC0, 0xDF, 0x12, 0x53, 0x3A}};
inline constexpr GUID IID_IHandleManager = {
    0x11B54E90, 0x0CDE, 0x11D1, {0xA5, 0xBC, 0x00, 0xC0, 0xDF, 0x12, 0x53, 0x3A}};
inline constexpr GUID IID_IBusEventIterator = {
    0x485F9040, 0x0CBC, 0x11D1, {0xA5, 0xBC, 0x00, 0xC0, 0xDF, 0x12, 0x53, 0x3A}};

/// The byte stream to which a caller lets signals be saved and from which they are loaded.
class TESK_API ISignalStream : public ICallerSupplied {
public:
    /// @return negative if `size` bytes could not be read
    virtual long Read(void *buffer, unsigned size) = 0;
    /// @return negative if the bytes could not be written
    virtual long Write(const void *buffer, unsigned size) = 0;

protected:
    ~ISignalStream() = default;
};

/// A list of signals outside the library that signals are exported to.
class TESK_API ISignalListWriter : public ICallerSupplied {
public:
    /// @return false to leave the list as it is
    virtual bool Begin() = 0;
    /// Adds a signal without children. @param parentHandle  -1 without a parent. @return false on failure
    virtual bool AddSignal(int handle, const char *name, int parentHandle, int index, int mode, long long *maxTime) = 0;
    /// Adds a signal with children.
    virtual bool AddBus(int handle, int childCount, const char *name, int parentHandle, int index, int mode,
                        long long *maxTime) = 0;
    /// Adds a property of a signal that was already added.
    virtual bool SetProperty(int handle, const char *name, const char *value) = 0;

protected:
    ~ISignalListWriter() = default;
};

/// A list of signals outside the library that signals are loaded from. Each row has an identifier, which becomes the
/// signal's handle. Texts stay valid until the next call.
class TESK_API ISignalListReader : public ICallerSupplied {
public:
    /// Number of top-level rows.
    virtual int GetCount() = 0;
    /// @return the identifier of a child; -1 if there is none
    virtual int GetChild(int parentHandle, int index) = 0;
    /// @return the identifier of a top-level row; -1 if there is none
    virtual int GetTop(int index) = 0;
    virtual void GetInfo(int id, bool *isBus, int *elements, const char **name, int *mode, long long *maxTime) = 0;
    /// @return null if the row has no such property
    virtual const char *GetProperty(int id, const char *name) = 0;
    /// @return a type description; may be null
    virtual const char *GetTypeInfo(int id) = 0;

protected:
    ~ISignalListReader() = default;
};

/// One node of a signal tree: a name, a type description, a parent, a wave or child signals, text properties and a
/// simulator handle.
///
/// The effective type is the signal's own type or, for an element of an array that has none, the element type of the
/// parent. A text that an operation returns lives until the next text operation on any signal.
class TESK_API ISignal : public IUnknown {
public:
    /// The signal's own name, without its path.
    virtual const char *GetName() = 0;
    /// Renames the signal. A container's index of names is not told: rename before adding.
    virtual void SetName(const char *name) = 0;
    /// Writes the names of the parents and this one, one behind the other without a separator.
    /// @return S_OK; E_INVALIDARG for no buffer; E_OUTOFMEMORY, with the parents' path in the buffer, if it is too
    ///         small, deliberately one byte before it would be
    virtual long GetFullName(char *buffer, unsigned size) = 0;
    /// The signal's own type; may be null.
    virtual Kestrin::KTypeInfo *GetTypeInfo() = 0;
    /// Applies a type: makes children or a wave for it. Does nothing if the effective type has the same description.
    /// @return S_OK; E_FAIL, and everything stays, if the type is invalid, describes more than 2^24 signals below this
    ///         one, or if its children or wave cannot be made
    virtual long SetTypeInfo(const Kestrin::KTypeInfo &type) = 0;
    /// As `SetTypeInfo`, but deliberately builds anew for an equal description too.
    virtual long SetTypeInfoString(const char *type) = 0;
    /// 1 a std_logic, 7 a vector of them, 6 a bit vector, 0 anything else, "bit" included.
    virtual int GetStdType() = 0;
    /// Replaces the type description and leaves wave and children alone.
    virtual void SetTypeOnly(const char *type) = 0;
    virtual void SetMaxTime(long long time) = 0;
    /// Identifier of the effective type. @return S_OK; E_FAIL if there is none; E_OUTOFMEMORY for too small a buffer
    virtual long GetTypeIdentifier(char *buffer, unsigned size) = 0;
    /// Width of the wave; 0 without one.
    virtual unsigned GetValueSize() = 0;
    /// The property "Mode", else that of the parent, else 6.
    virtual int GetMode() = 0;
    virtual void SetMode(int mode) = 0;
    /// The simulator handle; -1 for none.
    virtual int GetHandle() = 0;
    /// Stores the handle. No handle manager is told.
    virtual void SetHandle(int handle) = 0;
    virtual int GetColor() = 0;
    virtual void SetColor(int color) = 0;
    /// The stimulator information string; empty at start, never null.
    virtual const char *GetStimulatorInfo() = 0;
    virtual void SetStimulatorInfo(const char *info) = 0;
    virtual int GetDisplayMode() = 0;
    /// @return S_OK; E_INVALIDARG for mode 0 on a signal whose standard type is 0
    virtual long SetDisplayMode(int mode) = 0;
    /// The radix of the display mode: 1, 2, 8, 10 or 16 for 0 to 4, 1 above.
    virtual int GetDisplayRadix() = 0;
    /// Takes another signal's wave with one reference; null goes back to a wave of its own.
    /// @return S_OK; E_FAIL for a signal with children or without a wave
    virtual long ShareWave(ISignalWave *wave) = 0;
    /// False while the wave is another signal's.
    virtual bool OwnsWave() = 0;
    /// Deliberately empty.
    virtual void Refresh() = 0;
    /// Sets an option of value texts on the signal and everything below it.
    virtual void SetValueTextOption(bool on) = 0;
    virtual bool GetValueTextOption() = 0;
    /// A value as text; null if there is none.
    virtual const char *GetValueText(const void *value) = 0;
    /// The value of an event of this signal's wave as text; null if there is none.
    virtual const char *GetEventText(IEvent *event) = 0;
    /// The value at a time as text, composites in parentheses; null if there is none.
    virtual const char *GetValueTextAt(long long time, int mode) = 0;
    /// Deliberately empty. @return 0
    virtual long Reserved(int ignored) = 0;
    /// @return the value of a property, keys compared without case; null if there is none
    virtual const char *GetProperty(const char *name) = 0;
    /// Stores a property. "Handle", "MaxTime", "VBus" and "Name", spelled so, also take effect in the signal.
    virtual void SetProperty(const char *name, const char *value) = 0;
    /// Each pointer may be null. Type and strength are -1, the formula empty, where there is none.
    /// @return S_OK; E_OUTOFMEMORY if the formula does not fit
    virtual long GetStimulator(int *type, int *strength, char *formula, unsigned size) = 0;
    /// Attaches a stimulator: type 0 or 1 a formula, stored in its canonical form; 2 a hot key; 3 a clock. A type of -1
    /// or an empty formula detaches it. The hot key goes in every case.
    virtual void SetStimulator(int type, int strength, const char *formula) = 0;
    virtual int GetHotKey() = 0;
    /// Sets the hot key of the signal and everything below it. Deliberate: a key of 0 still sets stimulator type 2.
    virtual void SetHotKey(int key) = 0;
    virtual bool GetSpareFlag() = 0;
    virtual ISignal *GetParent() = 0;
    /// The container of the children; null for a signal without.
    virtual ISignalContainer *GetChildren() = 0;
    /// The wave; null for a signal without.
    virtual ISignalWave *GetWave() = 0;
    /// A new iterator over the children, with one reference. @return E_FAIL without children
    virtual long CreateSignalIterator(ISignalIterator **out) = 0;
    /// A new iterator over the wave, with one reference. @return E_FAIL without a wave
    virtual long CreateEventIterator(IEventIterator **out) = 0;
    /// A new iterator over the merged events of all leaves, with one reference. @return E_FAIL without children
    virtual long CreateBusEventIterator(IBusEventIterator **out) = 0;
    /// Reads a value text of a scalar signal into bytes.
    /// @return S_OK; E_FAIL for no scalar type or a bad text; E_INVALIDARG if `size` is too small
    virtual long ParseValue(const char *text, void *buffer, unsigned size) = 0;
    /// Reads properties and children, then enters the signal in `container`, which takes over the caller's reference.
    virtual long LoadFromStream(ISignalStream *stream, ISignalContainer *container, ISignal *parent) = 0;
    virtual long SaveToStream(ISignalStream *stream) = 0;
    /// The end of `ISignalContainer::AddFromDatabase`: makes the children, then enters the signal in `container`,
    /// which takes over the caller's reference.
    virtual long AttachFromDatabase(NTARN::IDatabaseReader *reader, ISignalContainer *container, ISignal *parent,
                                    int elements) = 0;
    /// As `AttachFromDatabase` for `ISignalContainer::AddFromList`.
    virtual long AttachFromList(ISignalListReader *reader, ISignalContainer *container, ISignal *parent,
                                int elements) = 0;
    /// Adds the signal and everything below it to a list. @return S_OK; E_FAIL if the list refuses
    virtual long ExportToList(ISignalListWriter *writer, int index) = 0;
    /// The first value as text, composites in parentheses; null if there is none.
    virtual const char *GetInitialValueText(bool flag) = 0;
    /// Stores the parent; no reference is held on it.
    virtual void SetParent(ISignal *parent) = 0;
    virtual long long GetMaxTime() = 0;
    virtual bool IsVBus() = 0;

protected:
    ~ISignal() = default;
};

/// A walk over the signals of a container. It holds no reference on the container, and a change of the list
/// invalidates it.
class TESK_API ISignalIterator : public IUnknown {
public:
    /// Stores up to `count` signals and goes past them. No references are added.
    /// @param fetched  receives the number stored; may be null
    /// @return S_OK if at least one was stored, else S_FALSE
    virtual long Next(unsigned count, ISignal **out, unsigned *fetched) = 0;
    /// Goes to the first signal.
    virtual void Reset() = 0;

protected:
    ~ISignalIterator() = default;
};

/// The index from a simulator handle to the signals that show its object. It holds no references: a signal leaves the
/// manager before it is destroyed. There is one walk over handles and one over signals; a new start ends the last one.
class TESK_API IHandleManager : public IUnknown {
public:
    /// @return the smallest handle; -1 if there is none
    virtual int GetFirstHandle() = 0;
    /// @return the next handle in rising order; -1 at the end
    virtual int GetNextHandle() = 0;
    /// @return the first signal that shows `handle`; null if there is none
    virtual ISignal *GetFirstSignal(int handle) = 0;
    /// Goes on with the walk, and skips a signal that has no handle any more. @return null at the end
    virtual ISignal *GetNextSignal() = 0;
    /// Enters a signal under its handle, once.
    /// @return S_OK, also if it is there already; E_INVALIDARG for a signal without a handle or without a wave
    virtual long Add(ISignal *signal) = 0;
    /// Removes a signal, which is looked up under the handle that it has now. @return S_OK; E_FAIL if it is not there
    virtual long Remove(ISignal *signal) = 0;
    /// Removes all signals of a handle. @return S_OK; E_FAIL if there is none
    virtual long RemoveHandle(int handle) = 0;
    virtual void Clear() = 0;

protected:
    ~IHandleManager() = default;
};

/// An ordered list of signals with look-up by name, which holds one reference on each.
class TESK_API ISignalContainer : public IUnknown {
public:
    /// @return S_OK; E_INVALIDARG if `before` is not in the list
    virtual long InsertBefore(ISignal *signal, ISignal *before) = 0;
    virtual long Add(ISignal *signal) = 0;
    /// @return S_OK; E_FAIL if the signal is not in the list
    virtual long Remove(ISignal *signal) = 0;
    /// Puts `newSignal`, renamed, in the place of `oldSignal`. Deliberate: the index of names and the handle manager
    /// keep the entries of `oldSignal` for as long as it lives; whoever keeps it alive keeps it as long as the list.
    /// @return S_OK; E_INVALIDARG if `oldSignal` is not in the list or `newSignal` has a parent
    virtual long Replace(ISignal *oldSignal, ISignal *newSignal) = 0;
    /// As the function of that name, without a parent. The signal is not added.
    virtual long CreateStdSignal(unsigned type, ISignal **out) = 0;
    /// As the function of that name, without a parent. The signal is not added.
    virtual long CreateSignal(const char *type, ISignal **out) = 0;
    virtual void Clear() = 0;
    virtual unsigned GetCount() = 0;
    /// Binds the leaves below a name, depth first, to simulator handles. Leaves with equal handles share one wave.
    /// @return S_OK; E_INVALIDARG for no handles; E_FAIL for an unknown name
    virtual long SetHandles(const char *name, const int *handles, unsigned count) = 0;
    /// Finds a signal by name or by path, such as "a(3).f". @return S_OK; E_FAIL, with `out` untouched
    virtual long Find(const char *name, ISignal **out) = 0;
    /// A new iterator on the first signal, with one reference.
    virtual long CreateIterator(ISignalIterator **out) = 0;
    /// @return S_OK; E_INVALIDARG for an `index` beyond the end
    virtual long GetAt(unsigned index, ISignal **out) = 0;
    /// Hands the manager out with one reference. @return S_OK; E_FAIL if there is none
    virtual long GetHandleManager(IHandleManager **out) = 0;
    /// Changes the manager of this container and all below. Signals in the list are not entered in the new one.
    virtual long SetHandleManager(IHandleManager *manager) = 0;
    /// Reads signals, each of standard type 1. @return E_FAIL for a count of 0; a failing signal is skipped
    virtual long Load(ISignalStream *stream, ISignal *parent) = 0;
    virtual long Save(ISignalStream *stream) = 0;
    virtual long LoadFromDatabase(NTARN::IDatabaseReader *reader) = 0;
    virtual long LoadFromList(ISignalListReader *reader) = 0;
    virtual long Export(ISignalListWriter *writer) = 0;
    /// Adds the signal of a database handle with everything below it.
    /// @param out  the signal, no reference; null on failure
    virtual long AddFromDatabase(NTARN::IDatabaseReader *reader, ISignal *parent, int handle, ISignal **out) = 0;
    /// Adds a row of a list with everything below it.
    /// @return S_OK; E_INVALIDARG for a row that is no signal; E_FAIL
    virtual long AddFromList(ISignalListReader *reader, ISignal *parent, int index, ISignal **out) = 0;
    /// The largest last time seen while loading; 0 at start.
    virtual long long GetMaxTime() = 0;

protected:
    ~ISignalContainer() = default;
};

/// The values of all leaves of a bus at the iterator's time. Owned by its iterator: never freed by its user.
class TESK_API IBusEvent {
public:
    virtual long long GetTime() = 0;
    /// Number of leaves.
    virtual unsigned GetElementCount() = 0;
    /// Bytes of a leaf's value; 0 beyond the end.
    virtual unsigned GetElementSize(unsigned index) = 0;
    /// Copies a leaf's value. @return its size; 0 beyond the end, without an event, or for too small a buffer
    virtual unsigned GetElementValue(unsigned index, void *buffer, unsigned size) = 0;
    /// A leaf's value; null beyond the end or without an event.
    virtual const void *GetElementValuePtr(unsigned index) = 0;
    /// Bit 0: every event at this time is marked, or there is none. Bit 1: one of them has its bit 1 set.
    virtual unsigned char GetFlags() = 0;
    /// As `GetElementCount`.
    virtual unsigned GetElementCount2() = 0;

protected:
    ~IBusEvent() = default;
};

/// Merges the events of all leaves of a bus by time. It holds no reference on the signal: the tree outlives it. A
/// change of a wave invalidates it.
class TESK_API IBusEventIterator : public IUnknown {
public:
    /// The bus event, one object for the iterator's whole life.
    virtual IBusEvent *GetEvent() = 0;
    /// Goes to the next time at which a leaf changes.
    /// @return S_OK; S_FALSE at the end and, deliberately, as soon as one leaf has no events at all
    virtual long Next() = 0;
    /// Goes in front of the first change; the leaves show their first events.
    virtual void Reset() = 0;
    /// Seeks in every leaf; mode 0 takes each leaf at or before `time` and wants an event exactly there in one of them.
    /// Deliberate: the time of the bus event stays.
    /// @return S_OK; E_FAIL if a leaf finds nothing, or if mode 0 finds no event at `time`
    virtual long Seek(long long time, int mode) = 0;
    /// Sum of the leaves' value sizes.
    virtual unsigned GetTotalValueSize() = 0;

protected:
    ~IBusEventIterator() = default;
};

// Factories. Each hands one reference to the caller, and answers E_OUTOFMEMORY if there is no memory.

/// A signal without type, wave and parent.
TESK_API long CreateEmptySignal(ISignal **signal);
/// @param parent  may be null; no reference is held on it
/// @return S_OK; E_FAIL if the type cannot be applied
TESK_API long CreateSignal(const Kestrin::KTypeInfo &type, ISignal *parent, ISignal **signal);
/// @param type  a type description; null or empty gives a signal without a type
TESK_API long CreateSignal(const char *type, ISignal *parent, ISignal **signal);
/// @param type  index of a predefined type, 0 to 8. @return E_INVALIDARG for any other
TESK_API long CreateStdSignal(unsigned type, ISignal *parent, ISignal **signal);

/// @param manager  may be null: the container then makes its own
TESK_API long CreateSignalContainer(ISignalContainer **container, IHandleManager *manager);
TESK_API long CreateHandleManager(IHandleManager **manager);

/// @return S_OK; E_INVALIDARG for a signal without children; E_FAIL if a leaf gives no iterator
TESK_API long CreateBusEventIterator(ISignal *signal, IBusEventIterator **iterator);
