// Busses of leaves with events at given times, and what an iterator over them shows.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "signal/fakesignal.h"

enum { Exact, Before, After, AtOrBefore, AtOrAfter };

using BusPtr = TReference<IBusEventIterator>;
using CTimes = std::vector<long long>;

inline BusPtr BusOf(ISignal &signal)
{
    IBusEventIterator *iterator = nullptr;
    EXPECT_EQ(CreateBusEventIterator(&signal, &iterator), S_OK);
    return BusPtr(iterator);
}

inline void AddTimes(ISignal &leaf, const CTimes &times)
{
    for (const long long time : times) {
        const auto value = static_cast<std::uint32_t>(time);
        leaf.GetWave()->AddEvent(time, 0, &value, sizeof value);
    }
}

// A bus of leaves with events at the times given; the value of an event is its time.
struct SBus {
    explicit SBus(const std::vector<CTimes> &leafTimes)
    {
        std::vector<CFakeSignal *> pointers;
        for (const CTimes &times : leafTimes) {
            leaves.push_back(NewFake("leaf"));
            AddTimes(*leaves.back(), times);
            pointers.push_back(leaves.back().get());
        }
        signal = NewFakeBus("bus", pointers);
    }

    std::vector<FakePtr> leaves;
    FakePtr signal;
};

// The times of the events that the leaves show; nothing for a leaf that shows none.
inline std::vector<std::optional<long long>> Shown(IBusEventIterator &bus)
{
    std::vector<std::optional<long long>> shown;
    IBusEvent &event = *bus.GetEvent();
    for (unsigned i = 0; i < event.GetElementCount(); ++i) {
        std::uint32_t value = 0;
        const bool hasValue = event.GetElementValue(i, &value, sizeof value) != 0;
        EXPECT_EQ(hasValue, event.GetElementValuePtr(i) != nullptr);
        shown.push_back(hasValue ? std::optional<long long>(static_cast<std::int32_t>(value)) : std::nullopt);
    }
    return shown;
}

inline CTimes BusTimes(IBusEventIterator &bus)
{
    CTimes times;
    while (bus.Next() == S_OK)
        times.push_back(bus.GetEvent()->GetTime());
    EXPECT_EQ(bus.GetEvent()->GetTime(), -1);
    return times;
}
