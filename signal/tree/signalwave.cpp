#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "signal/tree/component.h"
#include "signal/tree/watchedevents.h"
#include "signal/wave.h"

using namespace tesk;

namespace {

constexpr long long NoTime = -1;
constexpr std::size_t NotFound = std::numeric_limits<std::size_t>::max();

constexpr unsigned char Marked = 1;              // written by AddMarkedEvent
constexpr unsigned char MarkedOverOrdinary = 3;  // and an ordinary event as well

enum ESearchMode { Exact = 0, Before = 1, After = 2, AtOrBefore = 3, AtOrAfter = 4 };

// Events are lent, without a reference.
long GiveEvent(IEvent *event, IEvent **out)
{
    if (event == nullptr)
        return E_FAIL;
    if (out == nullptr)
        return E_INVALIDARG;
    *out = event;
    return S_OK;
}

/// One event, stored by value in its wave. `W` is the width of the value slot in bytes.
template <unsigned W>
class TEventImp final : public IEvent {
public:
    TEventImp(long long time, unsigned char flags, const void *value, unsigned size) : m_time(time), m_flags(flags)
    {
        StoreValue(value, size);
    }

    /// A null value, or one smaller than the slot, is not stored at all.
    void StoreValue(const void *value, unsigned size)
    {
        if (value != nullptr && size >= W)
            std::memcpy(m_value.data(), value, W);
    }

    long long GetTime() override { return m_time; }
    unsigned GetValueSize() override { return W; }

    bool SetValue(const void *value, unsigned size) override
    {
        if (value == nullptr || size != W)
            return false;
        StoreValue(value, size);
        return true;
    }

    unsigned GetValue(void *buffer, unsigned size) override
    {
        if (buffer == nullptr || size < W)
            return 0;
        std::memcpy(buffer, m_value.data(), W);
        return W;
    }

    void *GetValuePtr() override { return m_value.data(); }
    unsigned char GetFlags() override { return m_flags; }
    unsigned char SetFlags(unsigned char flags) override { return m_flags = flags; }

    long long m_time;
    std::array<std::uint32_t, W / 4> m_value = {};
    unsigned char m_flags;
};

template <unsigned W>
class TSignalWaveImp final : public TComponent<ISignalWave, IID_ISignalWave> {
public:
    long AddEvent(long long time, unsigned delta, const void *value, unsigned size) override;
    long AddMarkedEvent(long long time, unsigned delta, const void *value, unsigned size) override;
    long InsertEvent(long long time, const void *value, unsigned size) override;
    long PushPendingEvent(long long time, const void *value, unsigned size) override;
    void CommitPendingEvents() override;
    void ClearPendingEvents() override { m_pending.clear(); }
    void ClearEvents() override;
    long CreateEventIterator(IEventIterator **out) override;
    long FindEvent(long long time, int mode, IEvent **out) override;
    long DeleteEvent(long long time) override;
    long DeleteEvents(long long first, long long last) override;
    unsigned GetEventCount() override { return static_cast<unsigned>(m_events.size()); }
    unsigned GetValueWidth() override { return W; }
    long long GetFirstTime() override { return m_events.empty() ? NoTime : m_events.front().m_time; }
    long long GetLastTime() override { return m_events.empty() ? NoTime : m_events.back().m_time; }
    long GetEventValue(unsigned index, void *buffer, unsigned size) override;

    std::size_t Count() const { return m_events.size(); }
    /// @return null from the end on
    TEventImp<W> *EventAt(std::size_t index) { return index < m_events.size() ? &m_events[index] : nullptr; }
    /// @return the index of the event that `mode` finds, or NotFound
    std::size_t Search(long long time, int mode) const;
    void Watch(const std::shared_ptr<CChangeMark> &mark) { m_watchers.Add(mark); }

private:
    bool EndsAt(long long time) const { return !m_events.empty() && m_events.back().m_time == time; }
    std::size_t FirstNotBelow(long long time) const;
    std::size_t FirstAbove(long long time) const;

    std::vector<TEventImp<W>> m_events;   // ascending by time
    std::vector<TEventImp<W>> m_pending;  // in the order of pushing
    unsigned m_lastDelta = 0;             // of the last write by AddEvent or AddMarkedEvent
    CEventWatchers m_watchers;            // told whenever events come or go
};

/// A position as an index: one that outlives a change of the events points elsewhere, never into freed memory.
template <unsigned W>
class TEventIteratorImp final : public TComponent<IEventIterator, IID_IEventIterator>, public IWatchedEvents {
public:
    explicit TEventIteratorImp(TSignalWaveImp<W> &wave) : m_wave(wave) {}

    long Current(IEvent **out) override;
    long Next(unsigned count, IEvent **out, unsigned *fetched) override;
    void Reset() override { m_current = 0; }
    int HasPrevious() override { return m_current != 0; }
    int HasNext() override { return m_current + 1 != m_wave.Count(); }
    int HasEvents() override { return m_wave.Count() != 0; }
    long long GetCurrentTime() override;
    long Seek(long long time, int mode) override;
    void Watch(const std::shared_ptr<CChangeMark> &mark) override { m_wave.Watch(mark); }

private:
    TSignalWaveImp<W> &m_wave;  // no reference held
    std::size_t m_current = 0;  // the wave's count, or more, at the end
};

template <unsigned W>
long TSignalWaveImp<W>::AddEvent(long long time, unsigned delta, const void *value, unsigned size)
{
    if (!EndsAt(time)) {
        m_events.emplace_back(time, 0, value, size);
        m_watchers.Tell();
    } else if (delta < m_lastDelta) {
        return S_OK;
    } else {
        m_events.back().StoreValue(value, size);
    }
    m_lastDelta = delta;
    return S_OK;
}

template <unsigned W>
long TSignalWaveImp<W>::AddMarkedEvent(long long time, unsigned delta, const void *value, unsigned size)
{
    if (!EndsAt(time)) {
        m_events.emplace_back(time, Marked, value, size);
        m_watchers.Tell();
    } else {
        TEventImp<W> &last = m_events.back();
        last.StoreValue(value, size);
        if ((last.m_flags & Marked) == 0)
            last.m_flags = MarkedOverOrdinary;
    }
    m_lastDelta = delta;
    return S_OK;
}

template <unsigned W>
long TSignalWaveImp<W>::InsertEvent(long long /*time*/, const void * /*value*/, unsigned /*size*/)
{
    return E_NOTIMPL;
}

template <unsigned W>
long TSignalWaveImp<W>::PushPendingEvent(long long time, const void *value, unsigned size)
{
    m_pending.emplace_back(time, 0, value, size);
    return S_OK;
}

// A reader that walks its source backwards pushes falling times; the reverse order is the rising one.
template <unsigned W>
void TSignalWaveImp<W>::CommitPendingEvents()
{
    m_events.insert(m_events.begin(), m_pending.rbegin(), m_pending.rend());
    m_watchers.Tell();
    ClearPendingEvents();
}

template <unsigned W>
void TSignalWaveImp<W>::ClearEvents()
{
    m_events.clear();
    m_watchers.Tell();
    m_lastDelta = 0;
}

template <unsigned W>
long TSignalWaveImp<W>::CreateEventIterator(IEventIterator **out)
{
    return HandOutNew<TEventIteratorImp<W>>(out, *this);
}

template <unsigned W>
std::size_t TSignalWaveImp<W>::FirstNotBelow(long long time) const
{
    const auto event = std::ranges::lower_bound(m_events, time, {}, &TEventImp<W>::m_time);
    return static_cast<std::size_t>(event - m_events.begin());
}

template <unsigned W>
std::size_t TSignalWaveImp<W>::FirstAbove(long long time) const
{
    const auto event = std::ranges::upper_bound(m_events, time, {}, &TEventImp<W>::m_time);
    return static_cast<std::size_t>(event - m_events.begin());
}

template <unsigned W>
std::size_t TSignalWaveImp<W>::Search(long long time, int mode) const
{
    const auto orNotFound = [this](std::size_t index) { return index < m_events.size() ? index : NotFound; };
    if (mode == After)
        return orNotFound(FirstAbove(time));
    const std::size_t first = FirstNotBelow(time);
    const bool isExact = first < m_events.size() && m_events[first].m_time == time;
    switch (mode) {
    case Exact: return isExact ? first : NotFound;
    case Before: return orNotFound(first - 1);  // in front of the first element it wraps to NotFound
    case AtOrBefore: return isExact ? first : orNotFound(first - 1);
    case AtOrAfter: return orNotFound(first);
    default: return NotFound;
    }
}

template <unsigned W>
long TSignalWaveImp<W>::FindEvent(long long time, int mode, IEvent **out)
{
    return GiveEvent(EventAt(Search(time, mode)), out);
}

template <unsigned W>
long TSignalWaveImp<W>::DeleteEvent(long long time)
{
    const std::size_t event = Search(time, Exact);
    if (event == NotFound)
        return E_FAIL;
    m_events.erase(m_events.begin() + static_cast<std::ptrdiff_t>(event));
    m_watchers.Tell();
    return S_OK;
}

template <unsigned W>
long TSignalWaveImp<W>::DeleteEvents(long long first, long long last)
{
    if (first != NoTime && last != NoTime && last < first)
        std::swap(first, last);
    const std::size_t start = first == NoTime ? 0 : FirstNotBelow(first);
    if (start == m_events.size())
        return E_FAIL;
    const std::size_t stop = last == NoTime ? m_events.size() : FirstAbove(last);
    if (start < stop)  // the other way round only if the times do not rise
        m_events.erase(m_events.begin() + static_cast<std::ptrdiff_t>(start),
                       m_events.begin() + static_cast<std::ptrdiff_t>(stop));
    m_watchers.Tell();
    return S_OK;
}

template <unsigned W>
long TSignalWaveImp<W>::GetEventValue(unsigned index, void *buffer, unsigned size)
{
    TEventImp<W> *event = EventAt(index);
    if (event == nullptr || size < W)
        return E_INVALIDARG;
    return event->GetValue(buffer, size) != 0 ? S_OK : E_FAIL;
}

template <unsigned W>
long TEventIteratorImp<W>::Current(IEvent **out)
{
    return GiveEvent(m_wave.EventAt(m_current), out);
}

template <unsigned W>
long TEventIteratorImp<W>::Next(unsigned count, IEvent **out, unsigned *fetched)
{
    if (out == nullptr)
        count = 0;
    unsigned stored = 0;
    for (; stored < count && m_current < m_wave.Count(); ++stored)
        out[stored] = m_wave.EventAt(m_current++);
    if (fetched != nullptr)
        *fetched = stored;
    return stored != 0 ? S_OK : S_FALSE;
}

template <unsigned W>
long long TEventIteratorImp<W>::GetCurrentTime()
{
    const TEventImp<W> *event = m_wave.EventAt(m_current);
    return event != nullptr ? event->m_time : NoTime;
}

template <unsigned W>
long TEventIteratorImp<W>::Seek(long long time, int mode)
{
    const std::size_t found = m_wave.Search(time, mode);
    if (found == NotFound)
        return E_FAIL;
    m_current = found;
    return S_OK;
}

}  // namespace

long CreateSignalWave(unsigned size, ISignalWave **wave)
{
    switch (size) {
    case 1:
    case 2:
    case 4: return HandOutNew<TSignalWaveImp<4>>(wave);
    case 8: return HandOutNew<TSignalWaveImp<8>>(wave);
    default: return E_OUTOFMEMORY;  // deliberate, not E_INVALIDARG
    }
}
