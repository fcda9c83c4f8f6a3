// Reference counting for signal data and scalar data.
#pragma once

#include <memory>
#include <new>

#include "signal/unknown.h"

namespace tesk {

/// Gives an implementation of `Interface` its two counting operations. A new object has a count of 1.
template <typename Interface>
class TCounted : public Interface {
public:
    TCounted() = default;
    TCounted(const TCounted &) = delete;
    TCounted &operator=(const TCounted &) = delete;

    void AddRef() override { ++m_refCount; }

    unsigned Release() override
    {
        if (--m_refCount != 0)
            return m_refCount;
        delete this;
        return 0;
    }

private:
    unsigned m_refCount = 1;
};

/// Gives up one reference.
struct SDataReleaser {
    template <typename Object>
    void operator()(Object *object) const
    {
        object->Release();
    }
};

/// Owns one reference.
template <typename Object>
using TDataReference = std::unique_ptr<Object, SDataReleaser>;

/// Makes an object and gives it to the caller of a factory.
template <typename Object, typename Interface>
long HandOutNewData(Interface **out)
{
    if (out == nullptr)
        return E_INVALIDARG;
    *out = new (std::nothrow) Object;
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace tesk
