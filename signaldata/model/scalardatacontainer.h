// The implementation of tesk::IScalarDataContainer.
#pragma once

#include <vector>

#include "signaldata/model/scalardataimp.h"

namespace tesk {

class CScalarDataContainerImp final : public TCountedData<IScalarDataContainer> {
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
    // The handle stands beside the scalar so that the search need not go to each.
    struct SEntry {
        int handle;
        TReference<CScalarDataImp> scalar;
    };
    using CEntries = std::vector<SEntry>;

    CEntries::iterator FirstNotBelow(int handle);
    CEntries::iterator Place(int handle);

    CEntries m_scalars;                      // ascending by handle, no two equal
    unsigned long long m_handleChanges = 0;  // that the handles in m_scalars have seen
};

}  // namespace tesk
