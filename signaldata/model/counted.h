// Reference counting for signal data and scalar data.
#pragma once

#include <new>

#include "signal/tree/component.h"

namespace tesk {

/// An implementation of `Interface`. A new object has a count of 1.
template <typename Interface>
using TCountedData = TCounted<Interface, 1>;

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
