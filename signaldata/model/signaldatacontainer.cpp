#include "signaldata/model/signaldatacontainer.h"

#include <algorithm>

namespace tesk {

CSignalDataContainerImp::CSignals::iterator CSignalDataContainerImp::FirstNotBelow(int handle)
{
    return std::ranges::lower_bound(m_signals, handle, {}, [](const auto &signal) { return signal->GetHandle(); });
}

long CSignalDataContainerImp::Add(ISignalData *data)
try {
    if (data == nullptr || data->GetHandle() < 0)
        return E_INVALIDARG;
    data->AddRef();
    m_signals.insert(FirstNotBelow(data->GetHandle()), TReference<ISignalData>(data));
    return S_OK;
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

long CSignalDataContainerImp::Remove(ISignalData *data)
{
    if (data == nullptr)
        return E_INVALIDARG;
    const auto place = std::ranges::find(m_signals, data, [](const auto &signal) { return signal.get(); });
    if (place == m_signals.end())
        return E_FAIL;
    m_signals.erase(place);
    return S_OK;
}

ISignalData *CSignalDataContainerImp::GetAt(unsigned index)
{
    return index < m_signals.size() ? m_signals[index].get() : nullptr;
}

ISignalData *CSignalDataContainerImp::FindByName(const char *name)
{
    if (name == nullptr)
        return nullptr;
    for (const auto &signal : m_signals)
        if (ISignalData *found = signal->FindByName(name); found != nullptr)
            return found;
    return nullptr;
}

ISignalData *CSignalDataContainerImp::FindByHandle(int handle)
{
    if (handle < 0)
        return nullptr;
    const auto place = FirstNotBelow(handle);
    return place != m_signals.end() && (*place)->GetHandle() == handle ? place->get() : nullptr;
}

long CreateSignalDataContainer(ISignalDataContainer **container)
{
    return HandOutNewData<CSignalDataContainerImp>(container);
}

}  // namespace tesk
