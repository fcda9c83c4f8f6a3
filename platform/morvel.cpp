#include "platform/morvel.h"

#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "platform/stream/morvelevents.h"

namespace Morvel {

void KEventData::GetValue(unsigned char *buffer, unsigned size) const
try {
    if (size > 0)
        std::memset(buffer, 0, size);
    if (size == 0 || m_events == nullptr)
        return;
    const unsigned valueSize = m_events->GetValueSize();
    if (valueSize <= size) {
        m_events->CopyValue({m_position, m_time}, buffer);
        return;
    }
    std::vector<unsigned char> value(valueSize);
    m_events->CopyValue({m_position, m_time}, value.data());
    std::memcpy(buffer, value.data(), size);
} catch (const std::bad_alloc &) {  // nothing throws out of the library; the value stays what was read of it
}

KEventsStore::KEventsStore(std::shared_ptr<const CStoredEvents> events) : m_events(std::move(events)) {}

void KEventsStore::Put(KEventData &event, std::size_t position, long long time) const
{
    event.m_events = m_events.get();
    event.m_position = position;
    event.m_time = time;
}

bool KEventsStore::GetFirstEvent(const long long &time, KEventData *event, KEventsStoreCache *) const
try {
    SEventPlace place{};
    if (!m_events->FindLast(time, place))
        return false;
    Put(*event, place.position, place.time);
    return true;
} catch (const std::bad_alloc &) {
    return false;
}

bool KEventsStore::GetNextEvent(KEventData *event) const
try {
    if (event->m_events != nullptr && event->m_events != m_events.get())
        return false;
    SEventPlace place{event->m_position, event->m_time};
    if (!(event->m_events != nullptr ? m_events->Step(place) : m_events->FindAfter(-1, place)))
        return false;
    Put(*event, place.position, place.time);
    return true;
} catch (const std::bad_alloc &) {
    return false;
}

int KEventsStore::GetSecondSize() const
{
    return static_cast<int>(m_events->GetValueSize());
}

}  // namespace Morvel
