// Waves of 4-byte values for tests: making them, showing their events, searching them by a plain scan.
#pragma once

#include <algorithm>
#include <optional>
#include <ostream>
#include <random>
#include <vector>

#include "signal/reference.h"

enum { Exact, Before, After, AtOrBefore, AtOrAfter };

using WavePtr = TReference<ISignalWave>;

inline void Add(ISignalWave &wave, long long time, std::uint32_t value = 0, unsigned delta = 0)
{
    EXPECT_EQ(wave.AddEvent(time, delta, &value, sizeof value), S_OK);
}

inline void AddMarked(ISignalWave &wave, long long time, std::uint32_t value = 0, unsigned delta = 0)
{
    EXPECT_EQ(wave.AddMarkedEvent(time, delta, &value, sizeof value), S_OK);
}

inline void Push(ISignalWave &wave, long long time, std::uint32_t value = 0)
{
    EXPECT_EQ(wave.PushPendingEvent(time, &value, sizeof value), S_OK);
}

inline WavePtr WaveOf(const std::vector<long long> &times)
{
    WavePtr wave = NewWave();
    for (std::size_t i = 0; i < times.size(); ++i)
        Add(*wave, times[i], static_cast<std::uint32_t>(i));
    return wave;
}

// Equal times one behind the other, which only a commit can bring about.
inline WavePtr WaveWithEqualTimes(const std::vector<long long> &times)
{
    WavePtr wave = NewWave();
    for (std::size_t i = times.size(); i-- > 0;)
        Push(*wave, times[i], static_cast<std::uint32_t>(i));
    wave->CommitPendingEvents();
    return wave;
}

struct SEvent {
    long long time;
    std::uint32_t value;
    int flags;

    friend bool operator==(const SEvent &, const SEvent &) = default;
    friend void PrintTo(const SEvent &event, std::ostream *out)
    {
        *out << event.value << '@' << event.time << " flags " << event.flags;
    }
};

inline SEvent Show(IEvent &event)
{
    std::uint32_t value = 0;
    event.GetValue(&value, sizeof value);
    return {event.GetTime(), value, event.GetFlags()};
}

inline std::vector<SEvent> Events(ISignalWave &wave)
{
    std::vector<SEvent> events;
    const TReference<IEventIterator> iterator = EventsOf(wave);
    IEvent *event = nullptr;
    while (iterator->Next(1, &event, nullptr) == S_OK)
        events.push_back(Show(*event));
    EXPECT_EQ(events.size(), wave.GetEventCount());
    return events;
}

inline std::vector<long long> Times(ISignalWave &wave)
{
    std::vector<long long> times;
    for (const SEvent &event : Events(wave))
        times.push_back(event.time);
    return times;
}

// The place of the event found, which is its value in a wave of WaveOf.
inline std::optional<std::uint32_t> Find(ISignalWave &wave, long long time, int mode)
{
    IEvent *event = nullptr;
    const long result = wave.FindEvent(time, mode, &event);
    EXPECT_EQ(result, event != nullptr ? S_OK : E_FAIL);
    return event != nullptr ? std::optional(Show(*event).value) : std::nullopt;
}

// Random times between -3 and 20, rising, some of them equal.
inline std::vector<long long> NotFallingTimes(std::mt19937 &random)
{
    std::vector<long long> times(random() % 12);
    std::ranges::generate(times, [&random] { return static_cast<long long>(random() % 24) - 3; });
    std::ranges::sort(times);
    return times;
}

inline std::optional<std::uint32_t> Scan(const std::vector<long long> &times, long long time, int mode)
{
    const auto first = [&](auto matches) -> std::optional<std::uint32_t> {
        for (std::uint32_t i = 0; i < times.size(); ++i)
            if (matches(times[i]))
                return i;
        return std::nullopt;
    };
    const auto last = [&](auto matches) -> std::optional<std::uint32_t> {
        for (std::uint32_t i = static_cast<std::uint32_t>(times.size()); i-- > 0;)
            if (matches(times[i]))
                return i;
        return std::nullopt;
    };
    switch (mode) {
    case Exact: return first([time](long long t) { return t == time; });
    case Before: return last([time](long long t) { return t < time; });
    case After: return first([time](long long t) { return t > time; });
    case AtOrBefore: {
        const auto exact = first([time](long long t) { return t == time; });
        return exact ? exact : last([time](long long t) { return t < time; });
    }
    case AtOrAfter: return first([time](long long t) { return t >= time; });
    default: return std::nullopt;
    }
}
