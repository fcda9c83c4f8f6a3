// The sizes of the values of a signal's scalars, from the signal's type.
#pragma once

#include "platform/kestrin.h"
#include "signaldata/scalardata.h"
#include "signaldata/signaldata.h"

namespace tesk {

/// Walks over the type of a signal and its scalars side by side, and resets the value of each scalar.
class CValueSizes {
public:
    CValueSizes(IScalarDataContainer &scalars, ISignalData &data)
        : m_scalars(scalars), m_data(data), m_count(data.GetScalarCount())
    {}

    /// @return what `IScalarDataContainer::InitValueSizes` answers
    long Init() { return Walk(*m_data.GetTypeInfo()); }

private:
    long Walk(const Kestrin::KTypeInfo &type);
    long WalkVector(const Kestrin::KTypeInfo &type);
    long WalkArray(const Kestrin::KTypeInfo &type);
    long WalkRecord(const Kestrin::KTypeInfo &type);
    long ResetNext(unsigned size);

    IScalarDataContainer &m_scalars;
    ISignalData &m_data;
    long long m_count;      // scalars of the signal
    long long m_index = 0;  // of the next one; not past m_count
};

}  // namespace tesk
