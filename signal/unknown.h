// The component conventions of the signal model: identifiers, result codes, IUnknown.
//
// Every interface of the model except IEvent and IBusEvent begins with the three operations of IUnknown. A factory
// hands one reference to its caller, who gives it up with `Release`. Operations named `Get...` add no reference
// unless they say so. Counts are plain integers: an object and all references to it belong to one thread.
#pragma once

#include <cstdint>

#include "base/export.h"

/// Identifies an interface.
struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];

    // Written out for users who compile as C++17.
    friend constexpr bool operator==(const GUID &left, const GUID &right)
    {
        if (left.Data1 != right.Data1 || left.Data2 != right.Data2 || left.Data3 != right.Data3)
            return false;
        for (int i = 0; i < 8; ++i) {
            if (left.Data4[i] != right.Data4[i])
                return false;
        }
        return true;
    }
    friend constexpr bool operator!=(const GUID &left, const GUID &right) { return !(left == right); }
};

inline constexpr GUID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

// Result codes. A result is a success exactly when it is not negative.

/// Success.
inline constexpr std::int32_t S_OK = 0;
/// Success, but nothing was delivered: the end of an enumeration.
inline constexpr std::int32_t S_FALSE = 1;
/// The operation is deliberately empty.
inline constexpr std::int32_t E_NOTIMPL = static_cast<std::int32_t>(0x80004001);
/// The object has no interface of that identifier.
inline constexpr std::int32_t E_NOINTERFACE = static_cast<std::int32_t>(0x80004002);
/// Not found, not applicable, or a failed step.
inline constexpr std::int32_t E_FAIL = static_cast<std::int32_t>(0x80004005);
/// A broken internal expectation.
inline constexpr std::int32_t E_UNEXPECTED = static_cast<std::int32_t>(0x8000FFFF);
/// A bad argument, or an index beyond the end.
inline constexpr std::int32_t E_INVALIDARG = static_cast<std::int32_t>(0x80070057);
/// An allocation failed, or the caller's text buffer is too small.
inline constexpr std::int32_t E_OUTOFMEMORY = static_cast<std::int32_t>(0x8007000E);

/// What every component can do. Never deleted: the last `Release` ends the object.
class TESK_API IUnknown {
public:
    /// Asks for an interface. A component answers to the identifier of IUnknown and to that of its own interface.
    /// @param out  receives the object with one more reference; left alone on failure
    /// @return S_OK; E_NOINTERFACE for any other identifier
    virtual long QueryInterface(const GUID &identifier, void **out) = 0;
    /// @return the new number of references
    virtual unsigned AddRef() = 0;
    /// @return the number of references left; at 0 the object is gone
    virtual unsigned Release() = 0;

protected:
    ~IUnknown() = default;
};

/// Base of the interfaces that callers supply. The library never counts references to such an object, its lifetime is
/// the caller's affair; so the three operations have an answer here, and a caller need not write them.
class TESK_API ICallerSupplied : public IUnknown {
public:
    long QueryInterface(const GUID & /*identifier*/, void ** /*out*/) override { return E_NOINTERFACE; }
    unsigned AddRef() override { return 1; }
    unsigned Release() override { return 1; }

protected:
    ~ICallerSupplied() = default;
};
