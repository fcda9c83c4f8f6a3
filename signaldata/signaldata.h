// Signal data: the light signal tree of the stimulator dialogs. A node has its full path name, a type, a few numbers,
// text properties and the handles of its scalars; it has no waves and no events.
//
// Objects start with a count of 1, which belongs to whoever made them. A pointer that an operation hands out carries no
// reference. The order of the operations, and the destructor at their end, is part of the binary interface.
#pragma once

#include "base/export.h"

class ISignalListReader;

namespace Kestrin {
class KTypeInfo;
}

namespace tesk {

/// One signal.
class TESK_API ISignalData {
public:
    virtual void AddRef() = 0;
    /// @return the number of references left; at 0 the object is gone
    virtual unsigned Release() = 0;
    /// Takes the full hierarchy path. The name is what stands behind the last hierarchy separator (see
    /// `GetVHDLHierarchySeparator`); one inside an extended identifier at the beginning does not count.
    /// @return S_OK; E_INVALIDARG for null
    virtual long SetFullName(const char *name) = 0;
    /// @param type  a type description. @return S_OK; E_INVALIDARG, with no change, for null or an unreadable one
    virtual long SetTypeInfo(const char *type) = 0;
    virtual void SetHandle(int handle) = 0;
    virtual void SetMode(int mode) = 0;
    virtual void SetMaxTime(long long time) = 0;
    /// Stores a property; names are compared without case. @return S_OK; E_FAIL if either is null
    virtual long SetProperty(const char *name, const char *value) = 0;
    /// Adds the handle of a scalar unless it is found in the list. Deliberate: it goes to the end of the list, which is
    /// searched as a sorted one, so handles come in rising order.
    /// @return S_OK; E_INVALIDARG for a negative handle
    virtual long AddScalar(int handle) = 0;
    /// Fills the object from a row of a list, and children from the rows below. The handles of all leaves go, depth
    /// first, to this object; the leaves list none. The object's own handle stays -1. A row without a type is a
    /// std_logic.
    /// @return S_OK; E_INVALIDARG for no reader; E_FAIL for a row of id -1 or with an unreadable type, or for rows that
    ///         nest without end, with the object in the state it reached
    virtual long Init(ISignalListReader *reader, int id) = 0;
    /// Deliberately empty. @return E_NOTIMPL
    virtual long Reserved(int ignored) = 0;
    /// @return this object or one below with that full name, which is compared as names of the design hierarchy are;
    ///         null if there is none
    virtual ISignalData *FindByName(const char *name) = 0;
    /// Owned by the object; null while there is none.
    virtual Kestrin::KTypeInfo *GetTypeInfo() = 0;
    /// @return null beyond the end
    virtual ISignalData *GetChild(unsigned index) = 0;
    /// @return the handle of a scalar; -1 beyond the end
    virtual int GetScalar(unsigned index) = 0;
    /// Empties the list of scalars here and in everything below.
    virtual void ClearScalars() = 0;
    virtual const char *GetFullName() = 0;
    /// The last component of the full name.
    virtual const char *GetName() = 0;
    /// Copies what stands in front of the name, the separator included.
    /// @param size  characters that `buffer` has room for, the terminating zero not counted: the buffer has at least
    ///              `size` + 1 bytes
    /// @return false, with an empty text in `buffer`, if there are more; false for no buffer
    virtual bool GetPath(char *buffer, unsigned size) = 0;
    /// As `GetTypeInfo`.
    virtual Kestrin::KTypeInfo *GetTypeInfo2() = 0;
    /// -1 at start.
    virtual int GetHandle() = 0;
    /// 0 at start.
    virtual int GetMode() = 0;
    /// -1 at start.
    virtual long long GetMaxTime() = 0;
    virtual unsigned GetChildCount() = 0;
    virtual unsigned GetScalarCount() = 0;
    /// @return null
    virtual void *GetReserved() = 0;
    /// @return null if there is no such property
    virtual const char *GetProperty(const char *name) = 0;
    virtual ~ISignalData() = default;
};

/// A set of top-level signals, sorted by handle, with one reference on each.
class TESK_API ISignalDataContainer {
public:
    virtual void AddRef() = 0;
    /// @return the number of references left; at 0 the object is gone
    virtual unsigned Release() = 0;
    /// Adds a signal in front of those whose handle is not below its own. Equal handles may stand side by side.
    /// @return S_OK; E_INVALIDARG for null or a negative handle
    virtual long Add(ISignalData *data) = 0;
    /// @return S_OK; E_INVALIDARG for null; E_FAIL if it is not there
    virtual long Remove(ISignalData *data) = 0;
    /// @return null beyond the end
    virtual ISignalData *GetAt(unsigned index) = 0;
    /// Searches each tree in turn. @return null if there is no such signal
    virtual ISignalData *FindByName(const char *name) = 0;
    /// Searches the entries, not what is below them. @return null if there is no such signal
    virtual ISignalData *FindByHandle(int handle) = 0;
    virtual unsigned GetCount() = 0;
    virtual ~ISignalDataContainer() = default;
};

/// @param data  receives the new object, null on failure. @return S_OK or E_OUTOFMEMORY
TESK_API long CreateSignalData(ISignalData **data);
/// @param container  receives the new object, null on failure. @return S_OK or E_OUTOFMEMORY
TESK_API long CreateSignalDataContainer(ISignalDataContainer **container);

}  // namespace tesk
