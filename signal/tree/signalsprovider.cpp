#include "signal/tree/signalsprovider.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <unordered_map>
#include <utility>

#include "platform/crt.h"
#include "platform/felvarbase.h"
#include "signal/tree/handlemanager.h"
#include "signal/tree/signalwalk.h"
#include "signal/tree/streamform.h"

namespace tesk {

namespace {

// What the saved form can count: with more signals than that it would be read back as another one.
constexpr std::size_t MostSaved = std::numeric_limits<std::uint16_t>::max();

// Signals that live on outside a list whose names may lead to them. Never destroyed: a host may hold signals until the
// process ends.
using CDeparted = std::unordered_multimap<const ISignal *, CSignalsProvider *>;

CDeparted &Departed()
{
    static CDeparted &departed = *new CDeparted;
    return departed;
}

unsigned CountReferences(IUnknown &object)
{
    object.AddRef();
    return object.Release();
}

}  // namespace

bool SNameLess::operator()(const char *left, const char *right) const
{
    if (left == nullptr || right == nullptr)
        return false;
    return (IsHierarchyCaseSensitive() ? std::strcmp(left, right) : _stricmp(left, right)) < 0;
}

long CSignalsProvider::InsertBefore(ISignal *signal, ISignal *before)
{
    const auto place = Place(before);
    if (signal == nullptr || place == m_signals.end())
        return E_INVALIDARG;
    m_signals.insert(place, signal);
    m_names.emplace(signal->GetName(), signal);
    signal->AddRef();
    EnterManager(*signal);
    return S_OK;
}

long CSignalsProvider::Add(ISignal *signal)
{
    if (signal == nullptr)
        return E_INVALIDARG;
    m_signals.push_back(signal);
    signal->AddRef();
    EnterManager(*signal);
    m_names.emplace(signal->GetName(), signal);
    return S_OK;
}

// Deliberate: of several signals of one name, the first entry goes, whichever signal leaves.
long CSignalsProvider::Remove(ISignal *signal)
{
    const auto place = Place(signal);
    if (place == m_signals.end())
        return E_FAIL;
    const auto entry = signal->GetName() != nullptr ? FirstNamed(signal->GetName()) : m_names.cend();
    const bool isOwnEntry = entry != m_names.cend() && entry->second == signal;
    if (entry != m_names.cend())
        m_names.erase(entry);
    LeaveManager(*signal);
    m_signals.erase(place);
    GiveUp(*signal, !isOwnEntry);
    return S_OK;
}

// Deliberate: the name and the manager's entry of the old signal stay, and the new one gets no name entry.
long CSignalsProvider::Replace(ISignal *oldSignal, ISignal *newSignal)
{
    const auto place = Place(oldSignal);
    if (place == m_signals.end() || newSignal == nullptr || newSignal->GetParent() != nullptr)
        return E_INVALIDARG;
    newSignal->SetName(oldSignal->GetName());
    newSignal->AddRef();
    if (m_handleManager != nullptr)
        m_handleManager->Add(newSignal);
    *place = newSignal;
    GiveUp(*oldSignal, true);
    return S_OK;
}

long CSignalsProvider::GetAt(unsigned index, ISignal **out) const
{
    if (index >= m_signals.size() || out == nullptr)
        return E_INVALIDARG;
    *out = m_signals[index];
    return S_OK;
}

long CSignalsProvider::Save(ISignalStream *stream) const
{
    if (stream == nullptr)
        return E_INVALIDARG;
    if (m_signals.size() > MostSaved)
        return E_FAIL;
    const long written = WriteWord(*stream, m_signals.size());
    if (written < 0)
        return written;
    long result = S_OK;
    for (std::size_t i = 0; i < m_signals.size() && result >= 0; ++i)
        result = m_signals[i]->SaveToStream(stream);
    return result;
}

long CSignalsProvider::Export(ISignalListWriter *writer) const
{
    constexpr int NoIndex = -1;
    if (writer == nullptr)
        return E_FAIL;
    if (!writer->Begin())
        return S_OK;
    long result = S_OK;
    for (std::size_t i = 0; i < m_signals.size() && result >= 0; ++i)
        result = m_signals[i]->ExportToList(writer, NoIndex);
    return result;
}

void CSignalsProvider::Clear()
{
    std::vector<ISignal *> signals;
    signals.swap(m_signals);
    m_names.clear();
    for (const ISignal *signal : std::exchange(m_departed, {})) {
        const auto [first, last] = Departed().equal_range(signal);
        const auto note = std::find_if(first, last, [this](const auto &entry) { return entry.second == this; });
        if (note != last)
            Departed().erase(note);
    }
    for (ISignal *signal : signals)
        GiveUp(*signal, false);
    if (m_handleManager != nullptr && CountReferences(*m_handleManager) == 1)
        m_handleManager->Clear();
}

long CSignalsProvider::FindByName(const char *name, ISignal **out) const
{
    const auto entry = FirstNamed(name);
    if (entry == m_names.end())
        return E_FAIL;
    if (out == nullptr)
        return E_INVALIDARG;
    *out = entry->second;
    return S_OK;
}

long CSignalsProvider::PassHandleManager(IHandleManager *manager) const
{
    for (ISignal *signal : m_signals)
        if (signal->GetChildren() != nullptr)
            signal->GetChildren()->SetHandleManager(manager);
    return S_OK;
}

std::vector<ISignal *>::iterator CSignalsProvider::Place(ISignal *signal)
{
    return std::ranges::find(m_signals, signal);
}

// Equal is what is less in neither direction, so a null name is equal to any.
CSignalsProvider::CNames::const_iterator CSignalsProvider::FirstNamed(const char *name) const
{
    const auto entry = m_names.lower_bound(name);
    return entry != m_names.end() && !SNameLess()(name, entry->first) ? entry : m_names.end();
}

void CSignalsProvider::EnterManager(ISignal &signal)
{
    if (signal.GetChildren() != nullptr)
        signal.GetChildren()->SetHandleManager(m_handleManager);
    if (m_handleManager != nullptr)
        m_handleManager->Add(&signal);
}

void CSignalsProvider::LeaveManager(ISignal &signal)
{
    if (m_handleManager == nullptr)
        return;
    if (signal.GetChildren() == nullptr)
        m_handleManager->Remove(&signal);
    else
        ForEachChild(signal, [this](ISignal &child) { LeaveManager(child); });
}

// Gives up the list's reference. To a signal that ends with it nothing must lead any more: not a manager, where its
// entry stays as an empty one, nor m_names, where `isNamed` says that it may have one. One that lives on keeps its name
// until it ends.
void CSignalsProvider::GiveUp(ISignal &signal, bool isNamed)
{
    if (CountReferences(signal) == 1) {
        CHandleManager::Forget(&signal);
        if (isNamed)
            ForgetName(&signal);
    } else if (isNamed) {
        m_departed.push_back(&signal);
        Departed().emplace(&signal, this);
    }
    signal.Release();
}

void CSignalsProvider::ForgetName(const ISignal *signal)
{
    std::erase_if(m_names, [signal](const auto &entry) { return entry.second == signal; });
}

void CSignalsProvider::Forget(const ISignal *signal)
{
    const auto [first, last] = Departed().equal_range(signal);
    for (auto note = first; note != last; ++note)
        note->second->ForgetName(signal);
    Departed().erase(first, last);
}

}  // namespace tesk
