// Any bytes as a file of the waveform database: opened, and everything in it asked for.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "fuzz/support/inputfile.h"
#include "platform/changes/changewalk.h"
#include "platform/tarn.h"

namespace fuzz {

// Forward and back again: the same events, their times never falling.
inline void Walk(NTARN::IDatabaseReader &reader, int handle)
{
    reader.GetName(handle);
    reader.GetFullName(handle, false);
    reader.GetType(handle);
    NTARN::KEventIterator it = reader.EventsFrom(handle, LLONG_MIN);
    const NTARN::KEventIterator end = reader.EventsEnd(handle);
    long long last = LLONG_MIN;
    long long count = 0;
    for (; !(it == end); ++it, ++count) {
        Require(*it >= last);
        last = *it;
    }
    for (--it; !(it == end); --it)
        --count;
    Require(count == 0);
    if (last != LLONG_MIN)
        Require(*reader.EventsFrom(handle, last) == last);
}

// A signal and what is in it, of many parts the first ones and the last.
inline void WalkAll(NTARN::IDatabaseReader &reader, int handle, int most)
{
    Walk(reader, handle);
    const NTARN::HSignalRange children = reader.GetChildRange(handle);
    for (int child = children.first; child >= 0 && child <= children.last && child - children.first < most; ++child)
        WalkAll(reader, child, most / 4);
    Walk(reader, children.last);
}

inline void WalkAll(NTARN::IDatabaseReader &reader)
{
    constexpr int Most = 64;
    const int roots = static_cast<int>(reader.RootHandlesEnd() - reader.RootHandlesBegin());
    for (int i = 0; i < std::min(roots, Most); ++i)
        WalkAll(reader, reader.RootHandlesBegin()[i], Most);
}

// All at once by time, which rises, and counted: as many changes.
inline void WalkByTime(NTARN::IDatabaseReader &reader)
{
    auto *const source = dynamic_cast<tesk::IChangeSource *>(&reader);
    if (source == nullptr)
        return;
    std::vector<tesk::SElements> signals;
    for (const int *root = reader.RootHandlesBegin(); root != reader.RootHandlesEnd(); ++root) {
        const NTARN::HSignalRange children = reader.GetChildRange(*root);
        const bool isBus = children.first >= 0;
        signals.push_back({isBus ? children.first : *root, isBus ? children.last - children.first + 1 : 1});
        source->IdentifyChanges(signals.back().first);
    }
    if (const auto walk = source->WalkChanges(signals)) {
        long long last = LLONG_MIN;
        for (long long time = 0; walk->Next(time, LLONG_MAX); last = time) {
            Require(time > last || last == LLONG_MIN);
            for (const std::uint32_t signal : walk->GetChanged())
                Require(!walk->GetPositions(signal).empty() || walk->GetValues(signal).size() == 1);
        }
    }
    source->CountChanges(signals, {}, [](long long, long long) {});
}

inline void ReadDatabase(const char *path)
try {
    const std::unique_ptr<NTARN::IDatabaseReader> reader(NTARN::IDatabaseReader::create(path, false));
    if (reader) {
        WalkAll(*reader);
        WalkByTime(*reader);
    }
} catch (const NTARN::XFileCorrupted &) {
}

}  // namespace fuzz
