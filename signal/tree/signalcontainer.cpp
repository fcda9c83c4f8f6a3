#include "signal/tree/signalcontainer.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "core/scalarinfo.h"
#include "signal/tree/signaliterator.h"

using namespace tesk;

CSignalContainerImp::CSignalContainerImp(TReference<IHandleManager> manager) : m_handleManager(std::move(manager))
{
    m_provider.SetHandleManager(m_handleManager.get());
}

namespace {

// Index of the "(" or "." at which the name of a signal ends and that of a child of it begins, or npos. An extended
// identifier is stepped over as a whole; without one the first character is part of the name, since the names of
// children begin with such a character themselves.
std::size_t FindChildName(const char *name)
{
    const std::string_view text(name);
    const std::size_t identifier = static_cast<std::size_t>(SkipExtendedID(name) - name);
    return text.find_first_of("(.", std::max<std::size_t>(identifier, 1));
}

}  // namespace

long CSignalContainerImp::Find(const char *name, ISignal **out)
{
    if (name == nullptr || out == nullptr)
        return E_FAIL;
    const std::size_t split = FindChildName(name);
    const std::string key(std::string_view(name).substr(0, split));
    ISignal *signal = nullptr;
    if (m_provider.FindByName(key.c_str(), &signal) < 0)
        return E_FAIL;
    if (split != std::string::npos && signal->GetChildren() != nullptr)
        return signal->GetChildren()->Find(name + split, out);
    *out = signal;
    return S_OK;
}

long CSignalContainerImp::SetHandles(const char *name, const int *handles, unsigned count)
{
    if (handles == nullptr || count == 0)
        return E_INVALIDARG;
    ISignal *signal = nullptr;
    const long result = Find(name, &signal);
    if (result < 0)
        return result;
    AssignHandles(*signal, handles, count);
    return S_OK;
}

// @return the number of handles used up by `signal` and everything below it
unsigned CSignalContainerImp::AssignHandles(ISignal &signal, const int *handles, unsigned count)
{
    ISignalIterator *children = nullptr;
    if (signal.CreateSignalIterator(&children) < 0) {
        Bind(signal, handles[0]);
        return 1;
    }
    const TReference<ISignalIterator> owner(children);
    unsigned used = 0;
    ISignal *child = nullptr;
    while (used < count && children->Next(1, &child, nullptr) == S_OK)
        used += AssignHandles(*child, handles + used, count - used);
    return used;
}

// The first signal bound to a handle provides the wave, all others share it.
void CSignalContainerImp::Bind(ISignal &leaf, int handle)
{
    if (m_handleManager != nullptr)
        m_handleManager->Remove(&leaf);
    leaf.SetHandle(handle);
    ISignal *first = m_handleManager != nullptr ? m_handleManager->GetFirstSignal(handle) : nullptr;
    leaf.ShareWave(first != nullptr ? first->GetWave() : nullptr);
    if (m_handleManager != nullptr)
        m_handleManager->Add(&leaf);
}

long CSignalContainerImp::CreateIterator(ISignalIterator **out)
{
    return HandOutNew<CSignalIteratorImp>(out, m_provider);
}

long CSignalContainerImp::GetHandleManager(IHandleManager **out)
{
    if (m_handleManager == nullptr)
        return E_FAIL;
    if (out == nullptr)
        return E_INVALIDARG;
    *out = Share(m_handleManager.get()).release();
    return S_OK;
}

long CSignalContainerImp::SetHandleManager(IHandleManager *manager)
{
    m_handleManager = Share(manager);
    m_provider.SetHandleManager(manager);
    return m_provider.PassHandleManager(manager);
}

long CreateSignalContainer(ISignalContainer **container, IHandleManager *manager)
{
    TReference<IHandleManager> held = Share(manager);
    if (manager == nullptr) {
        IHandleManager *own = nullptr;
        CreateHandleManager(&own);
        held.reset(own);
    }
    return HandOutNew<CSignalContainerImp>(container, std::move(held));
}
