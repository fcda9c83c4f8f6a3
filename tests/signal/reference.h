// Owners of references for tests of the signal model.
#pragma once

#include "signal/signal.h"
#include "signal/tree/component.h"

using tesk::TReference;

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
