#include "signaldata/model/scalardatacontainer.h"

#include <algorithm>
#include <utility>

#include "signaldata/model/valuesizes.h"
#include "signaldata/signaldata.h"

namespace tesk {

namespace {

// Calls `operation(scalarHandle, signalHandle)` for every scalar of a signal. @return the first failure, else S_OK
template <typename Operation>
long ForEachScalar(ISignalData *data, Operation operation)
{
    if (data == nullptr)
        return E_INVALIDARG;
    for (unsigned i = 0; i < data->GetScalarCount(); ++i) {
        const long result = operation(data->GetScalar(i), data->GetHandle());
        if (result < 0)
            return result;
    }
    return S_OK;
}

}  // namespace

// A caller may have changed the handle of a scalar of this table, whose order then is as it is.
CScalarDataContainerImp::CEntries::iterator CScalarDataContainerImp::FirstNotBelow(int handle)
{
    if (m_handleChanges != CScalarDataImp::HandleChanges()) {
        for (SEntry &entry : m_scalars)
            entry.handle = entry.scalar->GetHandle();
        m_handleChanges = CScalarDataImp::HandleChanges();
    }
    return std::ranges::lower_bound(m_scalars, handle, {}, &SEntry::handle);
}

CScalarDataContainerImp::CEntries::iterator CScalarDataContainerImp::Place(int handle)
{
    const auto place = FirstNotBelow(handle);
    return place != m_scalars.end() && place->handle == handle ? place : m_scalars.end();
}

long CScalarDataContainerImp::LinkSignal(ISignalData *data)
{
    return ForEachScalar(data, [this](int scalar, int signal) { return Link(scalar, signal); });
}

long CScalarDataContainerImp::UnlinkSignal(ISignalData *data)
{
    return ForEachScalar(data, [this](int scalar, int signal) { return Unlink(scalar, signal); });
}

long CScalarDataContainerImp::Link(int scalarHandle, int signalHandle)
try {
    if (scalarHandle < 0 || signalHandle < 0)
        return E_INVALIDARG;
    auto place = FirstNotBelow(scalarHandle);
    if (place == m_scalars.end() || place->handle != scalarHandle) {
        TReference<CScalarDataImp> scalar(new CScalarDataImp(scalarHandle));
        place = m_scalars.insert(place, {scalarHandle, std::move(scalar)});
    }
    return place->scalar->AddSignal(signalHandle);
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

long CScalarDataContainerImp::Unlink(int scalarHandle, int signalHandle)
{
    if (scalarHandle < 0 || signalHandle < 0)
        return E_INVALIDARG;
    const auto place = Place(scalarHandle);
    if (place == m_scalars.end())
        return E_INVALIDARG;
    place->scalar->RemoveSignal(signalHandle);
    if (place->scalar->GetSignalCount() == 0)
        m_scalars.erase(place);
    return S_OK;
}

long CScalarDataContainerImp::InitValueSizes(ISignalData *data)
{
    if (data == nullptr)
        return E_INVALIDARG;
    if (data->GetTypeInfo() == nullptr || data->GetScalarCount() == 0)
        return E_UNEXPECTED;
    return CValueSizes(*this, *data).Init();
}

IScalarData *CScalarDataContainerImp::GetAt(unsigned index)
{
    return index < m_scalars.size() ? m_scalars[index].scalar.get() : nullptr;
}

IScalarData *CScalarDataContainerImp::Find(int handle)
{
    const auto place = Place(handle);
    return place != m_scalars.end() ? place->scalar.get() : nullptr;
}

long CreateScalarDataContainer(IScalarDataContainer **container)
{
    return HandOutNewData<CScalarDataContainerImp>(container);
}

}  // namespace tesk
