// Reference counting and the query for interfaces, written once for every component of the signal model.
#pragma once

#include <memory>
#include <new>
#include <utility>

#include "signal/unknown.h"

namespace tesk {

/// Gives an implementation of `Interface` its two counting operations.
/// @tparam First  the count of a new object
template <typename Interface, unsigned First>
class TCounted : public Interface {
public:
    TCounted() = default;
    TCounted(const TCounted &) = delete;
    TCounted &operator=(const TCounted &) = delete;
    virtual ~TCounted() = default;

    decltype(std::declval<Interface &>().AddRef()) AddRef() override
    {
        return static_cast<decltype(std::declval<Interface &>().AddRef())>(++m_refCount);
    }

    unsigned Release() override
    {
        if (--m_refCount != 0)
            return m_refCount;
        delete this;
        return 0;
    }

private:
    unsigned m_refCount = First;
};

/// Gives an implementation of `Interface` the three operations of IUnknown. `Identifier` is the identifier of
/// `Interface`. A new component has a count of 0; `HandOut` raises it to 1.
template <typename Interface, const GUID &Identifier>
class TComponent : public TCounted<Interface, 0> {
public:
    long QueryInterface(const GUID &identifier, void **out) override
    {
        if (identifier != IID_IUnknown && identifier != Identifier)
            return E_NOINTERFACE;
        if (out == nullptr)
            return E_INVALIDARG;
        *out = static_cast<Interface *>(this);
        this->AddRef();
        return S_OK;
    }
};

/// Gives a new component to its first owner. @return E_INVALIDARG for a null `out`; the component is then gone
template <typename Component, typename Interface>
long HandOut(std::unique_ptr<Component> component, Interface **out)
{
    if (out == nullptr)
        return E_INVALIDARG;
    component->AddRef();
    *out = component.release();
    return S_OK;
}

/// Makes a component and gives it to its first owner. @return E_OUTOFMEMORY if there is no memory for it
template <typename Component, typename Interface, typename... Arguments>
long HandOutNew(Interface **out, Arguments &&...arguments)
try {
    return HandOut(std::make_unique<Component>(std::forward<Arguments>(arguments)...), out);
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

/// Gives up one reference; the deleter of `TReference`.
struct SReleaser {
    template <typename Object>
    void operator()(Object *object) const
    {
        object->Release();
    }
};

/// Owns one reference.
template <typename Interface>
using TReference = std::unique_ptr<Interface, SReleaser>;

/// A further reference to an object that is held elsewhere; null for null.
template <typename Interface>
TReference<Interface> Share(Interface *object)
{
    if (object != nullptr)
        object->AddRef();
    return TReference<Interface>(object);
}

}  // namespace tesk
