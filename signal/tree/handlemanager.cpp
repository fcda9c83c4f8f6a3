#include "signal/tree/handlemanager.h"

#include <algorithm>
#include <unordered_map>

using namespace tesk;

namespace {

constexpr int NoHandle = -1;

// One place where a signal is entered.
struct SEntry {
    CHandleManager *manager;
    int handle;

    friend bool operator==(const SEntry &, const SEntry &) = default;
};

using CEntries = std::unordered_multimap<const ISignal *, SEntry>;

// Where every signal is entered. A manager keeps plain pointers, which this allows to be taken back when a signal ends,
// in whichever way it got there. Never destroyed: a host may hold signals until the process ends.
CEntries &Entries()
{
    static CEntries &entries = *new CEntries;
    return entries;
}

void DropEntry(const ISignal *signal, const SEntry &dropped)
{
    const auto [first, last] = Entries().equal_range(signal);
    const auto place = std::find_if(first, last, [&dropped](const auto &entry) { return entry.second == dropped; });
    if (place != last)
        Entries().erase(place);
}

}  // namespace

int CHandleManager::GetFirstHandle()
{
    m_handleCursor = m_signals.begin();
    return GetNextHandle();
}

int CHandleManager::GetNextHandle()
{
    if (m_handleCursor == m_signals.end())
        return NoHandle;
    return (m_handleCursor++)->first;
}

ISignal *CHandleManager::GetFirstSignal(int handle)
{
    m_signalCursor = m_signalFirst = m_signalEnd = nullptr;
    const auto entry = m_signals.find(handle);
    if (entry != m_signals.end()) {
        m_signalCursor = m_signalFirst = entry->second.data();
        m_signalEnd = m_signalFirst + entry->second.size();
    }
    return GetNextSignal();
}

// Deliberate: the signal's handle need not be the walked one any more, it must only have one.
ISignal *CHandleManager::GetNextSignal()
{
    while (m_signalCursor != m_signalEnd) {
        ISignal *signal = *m_signalCursor++;
        if (signal != nullptr && signal->GetHandle() != NoHandle)
            return signal;
    }
    return nullptr;
}

long CHandleManager::Add(ISignal *signal)
{
    if (signal == nullptr || signal->GetHandle() == NoHandle || signal->GetWave() == nullptr)
        return E_INVALIDARG;
    CSignals &signals = m_signals[signal->GetHandle()];
    if (std::ranges::find(signals, signal) != signals.end())
        return S_OK;
    EndWalkOver(signals);
    std::erase(signals, nullptr);  // the places of forgotten signals
    signals.push_back(signal);
    Entries().emplace(signal, SEntry{this, signal->GetHandle()});
    return S_OK;
}

// Deliberate: the signal is looked up under the handle that it has now, so it leaves before its handle changes.
long CHandleManager::Remove(ISignal *signal)
{
    const auto entry = signal != nullptr ? m_signals.find(signal->GetHandle()) : m_signals.end();
    if (entry == m_signals.end())
        return E_FAIL;
    CSignals &signals = entry->second;
    const auto place = std::ranges::find(signals, signal);
    if (place == signals.end())
        return E_FAIL;
    EndWalkOver(signals);
    signals.erase(place);
    DropEntry(signal, {this, entry->first});
    if (signals.empty())
        Erase(entry);
    return S_OK;
}

long CHandleManager::RemoveHandle(int handle)
{
    const auto entry = m_signals.find(handle);
    if (entry == m_signals.end())
        return E_FAIL;
    EndWalkOver(entry->second);
    DropEntries(entry);
    Erase(entry);
    return S_OK;
}

void CHandleManager::Clear()
{
    m_signalCursor = m_signalFirst = m_signalEnd = nullptr;
    for (auto entry = m_signals.begin(); entry != m_signals.end(); ++entry)
        DropEntries(entry);
    m_signals.clear();
    m_handleCursor = m_signals.end();
}

void CHandleManager::Forget(ISignal *signal)
{
    const auto [first, last] = Entries().equal_range(signal);
    for (auto entry = first; entry != last; ++entry) {
        const auto [manager, handle] = entry->second;
        std::ranges::replace(manager->m_signals[handle], signal, static_cast<ISignal *>(nullptr));
    }
    Entries().erase(first, last);
}

void CHandleManager::DropEntries(CIndex::iterator entry)
{
    for (const ISignal *signal : entry->second)
        DropEntry(signal, {this, entry->first});
}

void CHandleManager::EndWalkOver(const CSignals &signals)
{
    if (m_signalFirst == signals.data())
        m_signalCursor = m_signalFirst = m_signalEnd = nullptr;
}

// A walk over the handles goes on behind the one erased.
void CHandleManager::Erase(CIndex::iterator entry)
{
    if (m_handleCursor == entry)
        ++m_handleCursor;
    m_signals.erase(entry);
}

long CreateHandleManager(IHandleManager **manager)
{
    return HandOutNew<CHandleManager>(manager);
}
