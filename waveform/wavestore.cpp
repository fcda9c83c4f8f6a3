#include "waveform/wavestore.h"

#include "platform/kestrin.h"

struct WaveStore::WaveSignal {};

WaveStore::WaveStore() = default;
WaveStore::~WaveStore() = default;
void WaveStore::addSignal(const char *, const char *, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t,
                          std::intptr_t)
{}
void WaveStore::addHandle(const long long *, std::intptr_t) {}
int WaveStore::endSignal()
{
    return 0;
}
void WaveStore::addEvent(const long long *, const WaveEvent *) {}
void WaveStore::setEndTime(const long long *) {}
void WaveStore::setResolution(const long long *) {}
void WaveStore::setFlag(bool) {}
long long WaveStore::FindSignal(const char *) const
{
    return m_lastHandle - m_lastHandle;
}
const Kestrin::KTypeInfo *WaveStore::GetSignalType(long long, bool) const
{
    return nullptr;
}
bool WaveStore::HasEvents(long long) const
{
    return m_flag && m_firstHandle > 0;
}
const WaveEvent *WaveStore::FindLast(long long, long long) const
{
    return nullptr;
}
const WaveEvent *WaveStore::FindNext(long long, long long) const
{
    return nullptr;
}
WaveStore *ImportVcdFile(const char *)
{
    return nullptr;
}
