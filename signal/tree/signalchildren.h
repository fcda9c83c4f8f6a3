// The children that the type of a signal describes.
#pragma once

#include <functional>
#include <utility>

#include "platform/kestrin.h"
#include "signal/signal.h"
#include "signal/tree/component.h"

namespace tesk {

class CChildrenMaker {
public:
    /// Makes a child of a type, without a name. @return null if it cannot be made
    using TMakeChild = std::function<TReference<ISignal>(const Kestrin::KTypeInfo &)>;

    explicit CChildrenMaker(TMakeChild makeChild) : m_makeChild(std::move(makeChild)) {}

    /// A child for each element, such as "(3,2)", the last index going fastest.
    /// @return null if a child cannot be made, a name grows too long, or a dimension has no bounds
    TReference<ISignalContainer> OfArray(const Kestrin::KTypeInfo &type) const;
    /// A child for each field, such as ".f". @return null if a child cannot be made
    TReference<ISignalContainer> OfRecord(const Kestrin::KTypeInfo &type) const;

private:
    bool Add(ISignalContainer &children, const Kestrin::KTypeInfo &type, const char *name) const;

    TMakeChild m_makeChild;
};

}  // namespace tesk
