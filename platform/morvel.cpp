#include "platform/morvel.h"

namespace Morvel {

class CStoredEvents {};

void KEventData::GetValue(unsigned char *, unsigned) const {}

KEventsStore::KEventsStore(std::shared_ptr<const CStoredEvents> events) : m_events(std::move(events)) {}

bool KEventsStore::GetFirstEvent(const long long &, KEventData *, KEventsStoreCache *) const
{
    return false;
}

bool KEventsStore::GetNextEvent(KEventData *) const
{
    return false;
}

int KEventsStore::GetSecondSize() const
{
    return 0;
}

IMorvelRead *CreateStreamRead(const char *)
{
    return nullptr;
}

IRawMorvelRead *CreateRawMorvelRead(const char *)
{
    return nullptr;
}

void DeleteRawMorvelRead(IRawMorvelRead *reader)
{
    delete reader;
}

}  // namespace Morvel
