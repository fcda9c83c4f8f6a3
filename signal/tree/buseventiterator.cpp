#include <algorithm>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

#include "signal/signal.h"
#include "signal/tree/component.h"
#include "signal/tree/nexttimes.h"
#include "signal/tree/signalwalk.h"
#include "signal/tree/watchedevents.h"

using namespace tesk;

namespace {

constexpr long long NoTime = -1;

// Search modes.
constexpr int Exact = 0;
constexpr int AtOrBefore = 3;

// Flags of events.
constexpr unsigned char Marked = 1;
constexpr unsigned char MarkedOverOrdinary = 2;

class CBusEventIterator;

/// What the iterator shows at its time; a part of the iterator.
class CBusEventImp final : public IBusEvent {
public:
    explicit CBusEventImp(const CBusEventIterator &iterator) : m_iterator(iterator) {}

    long long GetTime() override;
    unsigned GetElementCount() override;
    unsigned GetElementSize(unsigned index) override;
    unsigned GetElementValue(unsigned index, void *buffer, unsigned size) override;
    const void *GetElementValuePtr(unsigned index) override;
    unsigned char GetFlags() override;
    unsigned GetElementCount2() override { return GetElementCount(); }

private:
    const CBusEventIterator &m_iterator;
};

class CBusEventIterator final : public TComponent<IBusEventIterator, IID_IBusEventIterator> {
public:
    CBusEventIterator() : m_busEvent(*this) {}

    /// Takes the leaves below `signal`, depth first. @return false if one of them gives no iterator
    bool CollectBelow(ISignal &signal);
    /// Called once, when all leaves are taken: nothing is allocated from then on.
    void ReserveTimes() { m_times.SetCount(m_iterators.size()); }

    IBusEvent *GetEvent() override { return &m_busEvent; }
    long Next() override;
    void Reset() override;
    long Seek(long long time, int mode) override;
    unsigned GetTotalValueSize() override { return std::accumulate(m_sizes.begin(), m_sizes.end(), 0u); }

private:
    friend class CBusEventImp;

    bool Collect(ISignal &signal);
    bool AddLeaf(ISignal &leaf);
    long long NextTime() const;
    long ScanForNext();
    void QueueTimes();
    long long TakeNext(std::size_t leaf);
    void ShowCurrentEvents();
    IEvent *EventAt(unsigned index) const { return index < m_events.size() ? m_events[index] : nullptr; }

    long long m_time = NoTime;                            // NoTime before the first event and after the last
    std::vector<TReference<IEventIterator>> m_iterators;  // one per leaf, each on the leaf's next unread event
    std::vector<IEvent *> m_events;                       // per leaf its event at m_time; null if it has none
    std::vector<unsigned> m_sizes;                        // per leaf the size of its value
    // Where the leaves stand; looked at anew when a wave has changed, and when the leaves were placed otherwise.
    CNextTimes m_times;
    bool m_areTimesKnown = false;
    bool m_areWatched = true;  // false if a leaf cannot tell that its wave has changed
    std::shared_ptr<CChangeMark> m_hasChanged = std::make_shared<CChangeMark>(false);
    CBusEventImp m_busEvent;
};

long long CBusEventImp::GetTime()
{
    return m_iterator.m_time;
}

unsigned CBusEventImp::GetElementCount()
{
    return static_cast<unsigned>(m_iterator.m_events.size());
}

unsigned CBusEventImp::GetElementSize(unsigned index)
{
    return index < m_iterator.m_sizes.size() ? m_iterator.m_sizes[index] : 0;
}

unsigned CBusEventImp::GetElementValue(unsigned index, void *buffer, unsigned size)
{
    IEvent *event = m_iterator.EventAt(index);
    return event != nullptr ? event->GetValue(buffer, size) : 0;
}

const void *CBusEventImp::GetElementValuePtr(unsigned index)
{
    IEvent *event = m_iterator.EventAt(index);
    return event != nullptr ? event->GetValuePtr() : nullptr;
}

// Only events of this very time count; where there is none, the bus event counts as marked.
unsigned char CBusEventImp::GetFlags()
{
    bool allMarked = true;
    bool oneOverOrdinary = false;
    for (IEvent *event : m_iterator.m_events) {
        if (event == nullptr || event->GetTime() != m_iterator.m_time)
            continue;
        const unsigned char flags = event->GetFlags();
        allMarked = allMarked && (flags & Marked) != 0;
        oneOverOrdinary = oneOverOrdinary || (flags & MarkedOverOrdinary) != 0;
    }
    return static_cast<unsigned char>((allMarked ? Marked : 0) | (oneOverOrdinary ? MarkedOverOrdinary : 0));
}

bool CBusEventIterator::CollectBelow(ISignal &signal)
{
    bool collected = true;
    ForEachChild(signal, [&](ISignal &child) { collected = collected && Collect(child); });
    return collected;
}

bool CBusEventIterator::Collect(ISignal &signal)
{
    return signal.GetWave() != nullptr ? AddLeaf(signal) : CollectBelow(signal);
}

bool CBusEventIterator::AddLeaf(ISignal &leaf)
{
    IEventIterator *iterator = nullptr;
    if (leaf.CreateEventIterator(&iterator) < 0)
        return false;
    m_iterators.emplace_back(iterator);
    if (IWatchedEvents *const watched = dynamic_cast<IWatchedEvents *>(iterator))
        watched->Watch(m_hasChanged);
    else
        m_areWatched = false;
    m_events.push_back(nullptr);
    m_sizes.push_back(leaf.GetValueSize());
    return true;
}

// Deliberate: one leaf without any event ends the whole bus.
long long CBusEventIterator::NextTime() const
{
    long long next = NoTime;
    for (const TReference<IEventIterator> &iterator : m_iterators) {
        if (iterator->HasEvents() == 0)
            return NoTime;
        const long long time = iterator->GetCurrentTime();
        if (time != NoTime && (next == NoTime || time < next))
            next = time;
    }
    return next;
}

long CBusEventIterator::Next()
{
    if (!m_areWatched || std::exchange(*m_hasChanged, false)) {
        m_areTimesKnown = false;
        return ScanForNext();
    }
    if (!m_areTimesKnown)
        QueueTimes();
    m_time = m_times.Least();
    if (m_time == CNextTimes::Never)
        return ScanForNext();  // all have ended, or have an event at the very end of time
    m_times.Take([this](std::size_t leaf) { return TakeNext(leaf); });
    return S_OK;
}

void CBusEventIterator::QueueTimes()
{
    const auto isEmpty = [](const TReference<IEventIterator> &iterator) { return iterator->HasEvents() == 0; };
    const bool isOver = std::ranges::any_of(m_iterators, isEmpty);
    m_times.Fill([&](std::size_t leaf) {
        const long long time = isOver ? NoTime : m_iterators[leaf]->GetCurrentTime();
        return time != NoTime ? time : CNextTimes::Never;
    });
    m_areTimesKnown = true;
}

// Takes the leaf's event at the time of the bus. @return when it has the next one
long long CBusEventIterator::TakeNext(std::size_t leaf)
{
    IEvent *event = nullptr;
    if (m_iterators[leaf]->Next(1, &event, nullptr) == S_OK)
        m_events[leaf] = event;
    const long long time = m_iterators[leaf]->GetCurrentTime();
    return time != NoTime ? time : CNextTimes::Never;
}

// `Next` by a look at all leaves.
long CBusEventIterator::ScanForNext()
{
    m_areTimesKnown = false;
    m_time = NextTime();
    if (m_time == NoTime)
        return S_FALSE;
    for (std::size_t i = 0; i < m_iterators.size(); ++i) {
        const long long time = m_iterators[i]->GetCurrentTime();
        if (time != NoTime && time <= m_time)
            TakeNext(i);
    }
    return S_OK;
}

void CBusEventIterator::Reset()
{
    for (const TReference<IEventIterator> &iterator : m_iterators)
        iterator->Reset();
    m_areTimesKnown = false;
    ShowCurrentEvents();
    m_time = NoTime;
}

// Deliberate: m_time stays.
long CBusEventIterator::Seek(long long time, int mode)
{
    const int leafMode = mode == Exact ? AtOrBefore : mode;
    bool isHit = false;
    long result = S_OK;
    m_areTimesKnown = false;
    for (std::size_t i = 0; i < m_iterators.size() && result >= 0; ++i) {
        result = m_iterators[i]->Seek(time, leafMode);
        isHit = isHit || (result >= 0 && m_iterators[i]->GetCurrentTime() == time);
    }
    ShowCurrentEvents();
    return result >= 0 && mode == Exact && !isHit ? E_FAIL : result;
}

void CBusEventIterator::ShowCurrentEvents()
{
    for (std::size_t i = 0; i < m_iterators.size(); ++i)
        if (m_iterators[i]->Current(&m_events[i]) < 0)
            m_events[i] = nullptr;
}

}  // namespace

long CreateBusEventIterator(ISignal *signal, IBusEventIterator **iterator)
try {
    if (signal == nullptr || signal->GetChildren() == nullptr)
        return E_INVALIDARG;
    auto bus = std::make_unique<CBusEventIterator>();
    if (!bus->CollectBelow(*signal))
        return E_FAIL;
    bus->ReserveTimes();
    return HandOut(std::move(bus), iterator);
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}
