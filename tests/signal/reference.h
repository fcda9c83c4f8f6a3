// Owners of references for tests of the signal model.
#pragma once

#include <vector>

#include "signal/component.h"
#include "signal/signal.h"

/// The number of references to an object that is alive.
inline unsigned ReferencesTo(IUnknown &object)
{
    object.AddRef();
    return object.Release();
}

inline TReference<ISignalWave> NewWave(unsigned size = 4)
{
    ISignalWave *wave = nullptr;
    CreateSignalWave(size, &wave);
    return TReference<ISignalWave>(wave);
}

inline TReference<IEventIterator> EventsOf(ISignalWave &wave)
{
    IEventIterator *iterator = nullptr;
    wave.CreateEventIterator(&iterator);
    return TReference<IEventIterator>(iterator);
}

inline TReference<IHandleManager> NewManager()
{
    IHandleManager *manager = nullptr;
    CreateHandleManager(&manager);
    return TReference<IHandleManager>(manager);
}

/// A container with a manager of its own, or with the one given.
inline TReference<ISignalContainer> NewContainer(IHandleManager *manager = nullptr)
{
    ISignalContainer *container = nullptr;
    CreateSignalContainer(&container, manager);
    return TReference<ISignalContainer>(container);
}

inline TReference<ISignal> NewSignalOf(const char *type, ISignal *parent = nullptr)
{
    ISignal *signal = nullptr;
    CreateSignal(type, parent, &signal);
    return TReference<ISignal>(signal);
}
