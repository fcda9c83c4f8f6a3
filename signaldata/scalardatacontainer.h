// The implementation of tesk::IScalarDataContainer. Internal.
#pragma once

#include <vector>

#include "signaldata/scalardataimp.h"

namespace tesk {

class CScalarDataContainerImp final : public TCounted<IScalarDataContainer> {
public:
    long LinkSignal(ISignalData *data) override;
    long UnlinkSignal(ISignalData *data) override;
    long Link(int scalarHandle, int signalHandle) override;
    long Unlink(int scalarHandle, int signalHandle) override;
    long InitValueSizes(ISignalData *data) override;
    IScalarData *GetAt(unsigned index) override;
    IScalarData *Find(int handle) override;
    void Clear() override { m_scalars.clear(); }
    unsigned GetCount() override { return static_cast<unsigned>(m_scalars.size()); }

private:
    using CScalars = std::vector<TDataReference<CScalarDataImp>>;

    CScalars::iterator FirstNotBelow(int handle);
    CScalars::iterator Place(int handle);

    CScalars m_scalars;  // ascending by handle, no two equal
};

}  // namespace tesk
