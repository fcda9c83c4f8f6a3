// What tests put into a WaveStore by hand, and read from it.
#pragma once

#include <cstdint>
#include <string>

#include "signal/signaltools.h"
#include "waveform/wavestore.h"

inline void PutEvent(WaveStore &store, long long handle, long long time, std::uint64_t value, std::uint64_t unused = 0)
{
    const WaveEvent event{time, value, unused};
    store.addEvent(&handle, &event);
}

/// "time=value", "-" for none.
inline std::string EventText(const WaveEvent *event)
{
    return event != nullptr ? std::to_string(event->m_time) + "=" + std::to_string(event->m_value) : "-";
}
