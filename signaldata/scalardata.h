// Scalar data: the table of the scalars of a simulation and of the signals that use each of them. A scalar is one bit
// of a vector or one whole value of a scalar type.
//
// Objects start with a count of 1, which belongs to whoever made them. A pointer that an operation hands out carries no
// reference. The order of the operations, and the destructor at their end, is part of the binary interface.
#pragma once

#include "base/export.h"

namespace tesk {

class ISignalData;

/// One scalar: its handle, its value, and the handles of the signals that use it.
class TESK_API IScalarData {
public:
    virtual void AddRef() = 0;
    /// @return the number of references left; at 0 the object is gone
    virtual unsigned Release() = 0;
    /// Enters a signal once, in rising order. @return S_OK; E_INVALIDARG for a negative handle
    virtual long AddSignal(int handle) = 0;
    /// @return S_OK; E_FAIL if it is not there
    virtual long RemoveSignal(int handle) = 0;
    /// @return S_OK; E_INVALIDARG for a negative handle
    virtual long SetHandle(int handle) = 0;
    /// @return S_OK; E_INVALIDARG, with no change, for a value of more than 10 bytes
    virtual long SetValue(const void *value, unsigned size) = 0;
    /// Makes the value zero and `size` bytes long, 10 at most. @return S_OK
    virtual long ResetValue(unsigned size) = 0;
    virtual int GetHandle() = 0;
    virtual unsigned GetValueSize() = 0;
    /// @return S_OK; E_INVALIDARG if `size` is less than the size of the value
    virtual long GetValue(void *buffer, unsigned size) = 0;
    /// The 10 bytes of the value.
    virtual const void *GetValuePtr() = 0;
    virtual unsigned GetSignalCount() = 0;
    /// @return the handle of a signal; -1 beyond the end
    virtual int GetSignal(unsigned index) = 0;
    virtual ~IScalarData() = default;
};

/// The table of all scalars, sorted by handle. A scalar lives exactly as long as a signal uses it.
class TESK_API IScalarDataContainer {
public:
    virtual void AddRef() = 0;
    /// @return the number of references left; at 0 the object is gone
    virtual unsigned Release() = 0;
    /// Links every scalar of a signal to it, see `Link`. The walk stops at the first failure.
    /// @return S_OK; E_INVALIDARG for null or a negative handle; E_OUTOFMEMORY
    virtual long LinkSignal(ISignalData *data) = 0;
    /// Undoes `LinkSignal`. The walk stops at the first failure.
    /// @return S_OK; E_INVALIDARG for null, a negative handle or a scalar that is not in the table
    virtual long UnlinkSignal(ISignalData *data) = 0;
    /// Notes that a signal uses a scalar, which is made if it is new.
    /// @return S_OK; E_INVALIDARG for a negative handle; E_OUTOFMEMORY
    virtual long Link(int scalarHandle, int signalHandle) = 0;
    /// Notes that a signal uses a scalar no more. The scalar goes with its last signal.
    /// @return S_OK; E_INVALIDARG for a negative handle or a scalar that is not in the table
    virtual long Unlink(int scalarHandle, int signalHandle) = 0;
    /// Gives every scalar of a signal a zero value of the size that the signal's type tells.
    /// Deliberate: the elements of an array of arrays or records are counted once for each of its dimensions, and of a
    /// record only the last field's result counts.
    /// @return S_OK; E_INVALIDARG for null or if scalars are missing; E_UNEXPECTED without a type or scalars, or for
    ///         fewer scalars than a vector has elements
    virtual long InitValueSizes(ISignalData *data) = 0;
    /// @return null beyond the end
    virtual IScalarData *GetAt(unsigned index) = 0;
    /// @return null if there is no such scalar
    virtual IScalarData *Find(int handle) = 0;
    /// Empties the table.
    virtual void Clear() = 0;
    virtual unsigned GetCount() = 0;
    virtual ~IScalarDataContainer() = default;
};

/// @param container  receives the new object, null on failure. @return S_OK or E_OUTOFMEMORY
TESK_API long CreateScalarDataContainer(IScalarDataContainer **container);

}  // namespace tesk
