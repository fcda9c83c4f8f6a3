// Walks over signals.
#pragma once

#include "signal/signal.h"
#include "signal/tree/component.h"

namespace tesk {

/// Calls `action(ISignal &)` for each child in order; does nothing for a signal without children.
template <typename Action>
void ForEachChild(ISignal &signal, Action action)
{
    ISignalIterator *children = nullptr;
    if (signal.CreateSignalIterator(&children) < 0)
        return;
    const TReference<ISignalIterator> owner(children);
    ISignal *child = nullptr;
    while (children->Next(1, &child, nullptr) == S_OK)
        action(*child);
}

}  // namespace tesk
