// Makers of signal data and scalar data for tests.
#pragma once

#include <string>
#include <vector>

#include "signal/signaltools.h"
#include "signaldata/model/counted.h"
#include "signaldata/scalardata.h"
#include "signaldata/signaldata.h"

inline tesk::TReference<tesk::ISignalData> MakeData()
{
    tesk::ISignalData *data = nullptr;
    tesk::CreateSignalData(&data);
    return tesk::TReference<tesk::ISignalData>(data);
}

inline tesk::TReference<tesk::ISignalData> MakeData(int handle, const std::vector<int> &scalars = {})
{
    tesk::TReference<tesk::ISignalData> data = MakeData();
    data->SetHandle(handle);
    for (const int scalar : scalars)
        data->AddScalar(scalar);
    return data;
}

inline tesk::TReference<tesk::ISignalDataContainer> MakeDataContainer()
{
    tesk::ISignalDataContainer *container = nullptr;
    tesk::CreateSignalDataContainer(&container);
    return tesk::TReference<tesk::ISignalDataContainer>(container);
}

inline tesk::TReference<tesk::IScalarDataContainer> MakeScalars()
{
    tesk::IScalarDataContainer *container = nullptr;
    tesk::CreateScalarDataContainer(&container);
    return tesk::TReference<tesk::IScalarDataContainer>(container);
}

/// The number of references to an object that is alive.
template <typename Object>
unsigned CountOf(Object &object)
{
    object.AddRef();
    return object.Release();
}

inline std::vector<int> ScalarsOf(tesk::ISignalData &data)
{
    std::vector<int> scalars;
    for (unsigned i = 0; i < data.GetScalarCount(); ++i)
        scalars.push_back(data.GetScalar(i));
    return scalars;
}

inline std::vector<int> SignalsOf(tesk::IScalarData &scalar)
{
    std::vector<int> signals;
    for (unsigned i = 0; i < scalar.GetSignalCount(); ++i)
        signals.push_back(scalar.GetSignal(i));
    return signals;
}
